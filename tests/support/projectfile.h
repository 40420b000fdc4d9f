#pragma once

#include <string>

/// @param path from the root of the checkout.
/// @return the path of a file or folder of the checkout that the tests were built in.
std::string ProjectFile(const std::string& path);
