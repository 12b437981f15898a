#pragma once

#include <algorithm>
#include <functional>
#include <vector>

namespace Faults {

/// Delta debugging: leaves out ever smaller parts of a list as long as what is left fails still. `fails` is asked no
/// more once it is impatient.
template<class T>
std::vector<T> smallestFailing(std::vector<T> list, const std::function<bool(const std::vector<T> &)> &fails,
                               const std::function<bool()> &isImpatient)
{
    for (std::size_t part = (list.size() + 1) / 2; part > 0; part = part == 1 ? 0 : (part + 1) / 2) {
        // From the end: what comes early often makes the later ones possible.
        for (std::size_t end = list.size(); end > 0 && list.size() > 1;) {
            if (isImpatient())
                return list;
            const std::size_t begin = end > part ? end - part : 0;
            std::vector<T> less(list.begin(), list.begin() + std::ptrdiff_t(begin));
            less.insert(less.end(), list.begin() + std::ptrdiff_t(std::min(end, list.size())), list.end());
            if (!less.empty() && fails(less))
                list = std::move(less);
            end = begin;
        }
    }
    return list;
}

} // namespace Faults
