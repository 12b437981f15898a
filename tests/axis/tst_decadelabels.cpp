#include "axis/decadelabels.h"

#include <gtest/gtest.h>

namespace {

/// "text@left" for each, with letters 10 pixels wide and a gap of 5.
std::string labelled(double lower, double upper, int width)
{
    std::string all;
    const auto widthOf = [](const QString &text) { return 10 * text.size(); };
    for (const Tsb::DecadeLabel &label : Tsb::decadeLabels(lower, upper, width, 5, widthOf)) {
        all += (all.empty() ? "" : " ") + label.text.toStdString();
        all += "@" + QString::number(label.left).toStdString();
    }
    return all;
}

TEST(DecadeLabels, CutOnesMoveInwardAndWithLessThanTwoTheEndsTellTheirValues)
{
    const struct {
        double lower, upper;
        int width;
        const char *labels;
    } cases[] = {
        {0.5, 3.5, 300, "10@39.5 100@134.5 1000@229.5"},
        {1, 3, 300, "10@0 100@134.5"},       // the first would be cut on the left
        {0.5, 2.05, 300, "10@86.5 100@270"}, // the last on the right
        {0.9, 2.05, 60, "10@0 100@30"},      // both
        {0.5, 2.05, 62, "10@9.5"},           // not into its neighbour, and no room for the ends
        {1.2, 1.8, 300, "15.8@0 63.1@260"},  // no decade
        {0.5, 1.5, 300, "3.16@0 10@139.5 31.6@260"},
        {0.9, 1.9, 300, "7.94@0 79.4@260"},     // the one decade would touch an end
        {2, 2.00001, 300, "100@0 100.002@230"}, // as many digits as tell them apart
        {-10, 10, 300, "1e-10@0 0.0001@59.5 1@144.5 100@164.5 1e+06@214.5"},
        {2, 2, 300, ""},
        {1.2, 1.8, 80, ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(labelled(c.lower, c.upper, c.width), c.labels) << c.lower << " to " << c.upper << " on " << c.width;
}

} // namespace
