#include "util/valueformat.h"

#include <gtest/gtest.h>

TEST(ValueFormat, WhatCanNotBeUsedIsRefused)
{
    const QByteArray longFormat = QByteArray("{0:999}").repeated(2000);
    const struct {
        const char *format, *text; ///< null: it can't be used
    } table[] = {{"{:.1f} of {:.0f}", "1.5 of 20"},
                 {"{}", "1.5"},
                 {"{1:g}", "20"},
                 {"plain {{}}", "plain {}"},
                 {"{:8.2f}|", "    1.50|"},
                 {"{:d}", nullptr},
                 {"{2}", nullptr},
                 {"{name}", nullptr},
                 {"{", nullptr},
                 {"{:{}}", nullptr},
                 {"{:1000000000}", nullptr},
                 {"{:.1000000000f}", nullptr},
                 {"1000000000 {:.0f}", "1000000000 2"},
                 {"%d %1", "%d %1"},
                 {"{} {} {}", nullptr},
                 {longFormat, nullptr}};
    for (const auto &row : table) {
        bool isValid = false;
        EXPECT_EQ(formatValues(row.format, {1.5, 20}, &isValid), QString::fromUtf8(row.text)) << row.format;
        EXPECT_EQ(isValid, row.text != nullptr) << row.format;
    }
}
