#pragma once

#include <algorithm>
#include <cstddef>

/// Sorts an array with a comparison as that of `qsort`. Elements that compare equal have no defined order.
template <class T, class Compare>
void VFQuickSort(T* items, std::size_t count, Compare compare)
{
    std::sort(items, items + count, [&](const T& left, const T& right) { return compare(left, right) < 0; });
}
