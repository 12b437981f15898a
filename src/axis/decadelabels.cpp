#include "axis/decadelabels.h"

namespace Tsb {

namespace {

/// Three digits, and more where both ends would read the same.
std::pair<QString, QString> endTexts(double lower, double upper)
{
    const auto text = [](double decade, int digits) { return QString::number(std::pow(10.0, decade), 'g', digits); };
    int digits = 3;
    while (digits < 17 && text(lower, digits) == text(upper, digits))
        ++digits;
    return {text(lower, digits), text(upper, digits)};
}

} // namespace

double decadePixel(double decade, double lower, double upper, int size)
{
    return std::trunc((decade - lower) / (upper - lower) * size + 0.5) - 0.5;
}

std::vector<DecadeLabel> decadeLabels(double lower, double upper, int width, int gap,
                                      const std::function<int(const QString &)> &widthOf)
{
    std::vector<DecadeLabel> labels;
    if (!(lower < upper))
        return labels;
    const auto addDecades = [&](double freeFrom, double freeTo) {
        forEachDecade(lower, upper, [&](double decade) {
            const QString text = QString::number(std::pow(10.0, decade), 'g', 6);
            const int textWidth = widthOf(text);
            const double centred = decadePixel(decade, lower, upper, width) - textWidth / 2.0;
            const double left = std::max(0.0, std::min(centred, double(width - textWidth)));
            if (decade < lower || left < freeFrom || left + textWidth > freeTo)
                return;
            labels.push_back({left, text});
            freeFrom = left + textWidth + gap;
        });
    };
    addDecades(0, width);
    if (labels.size() >= 2)
        return labels;
    const auto [low, high] = endTexts(lower, upper);
    const int lowWidth = widthOf(low), highWidth = widthOf(high);
    if (lowWidth + gap + highWidth > width)
        return labels;
    labels = {{0, low}};
    addDecades(lowWidth + gap, width - highWidth - gap);
    labels.push_back({double(width - highWidth), high});
    return labels;
}

} // namespace Tsb
