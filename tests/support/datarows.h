#pragma once

#include <QtTest>

/// A row of a test's table with its values in the columns' order, as
/// `QTest::newRow(name) << ... << ...`, which the formatter breaks over lines earlier.
template <typename... Values>
void row(const char* name, const Values&... values) {
    (QTest::newRow(name) << ... << values);
}
