#pragma once

/// Marks what libktcore.so offers; everything else in it is hidden.
#define KTCORE_API __attribute__((visibility("default")))
