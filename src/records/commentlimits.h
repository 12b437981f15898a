#pragma once

#include <cstdint>

/// Of comment files: readers pass over what is beyond, so that writers refuse to make it.
namespace CommentLimits {

constexpr std::int64_t fileBytes = 256'000'000; // a comment takes a multiple of its bytes in memory
constexpr std::int64_t lineBytes = 1'000'000;   // without the line feed

} // namespace CommentLimits
