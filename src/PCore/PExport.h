// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// What a library exports.

#include <QtGlobal>

/// Stands before what a library of the framework exports: the classes and functions of its face.
/// All else is hidden, so that it can change without breaking a host.
#define PCD_EXPORT Q_DECL_EXPORT

/// Stands before what is private but has tests of its own: exported only where the tests are built.
#ifdef PCD_BUILD_TESTS
#define PCD_TEST_EXPORT Q_DECL_EXPORT
#else
#define PCD_TEST_EXPORT
#endif
