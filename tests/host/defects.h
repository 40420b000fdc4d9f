#pragma once

#include <string_view>

// The defects of the defective library.

/// Whether it is the one that the environment names.
bool Has(std::string_view defect);

// Those that only a wxWidgets host meets, by when they come. GUI thread.

void SpoilWxHostByCreate();
void SpoilWxHostByDestroy();

/// @param inDestroy whether a destroy releases, and not the operator's closing.
void SpoilWxHostByReleases(bool inDestroy);
