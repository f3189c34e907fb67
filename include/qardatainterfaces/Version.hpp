#pragma once

/// @file
/// The version of the headers at compile time, and the version of the library loaded at run time.

/// The version of these headers.
/// @{
#define ZRQAR_VERSION_MAJOR 1
#define ZRQAR_VERSION_MINOR 0
#define ZRQAR_VERSION_PATCH 0
/// @}

/// The version and build date of the loaded library, which may differ from the version of the headers.
extern "C" {
/// Month abbreviation, day and year, separated by blanks, for example "Nov 22 2026".
[[gnu::visibility("default")]] extern const char* const libzrqardatainterfaces_build_date;
/// Four decimal numbers separated by dots, for example "1.0.0.0".
[[gnu::visibility("default")]] extern const char* const libzrqardatainterfaces_version;
}
