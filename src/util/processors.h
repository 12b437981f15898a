#pragma once

/// Before a function: its loops are compiled for processors with wider registers too, and the best version is chosen
/// when the program starts. All versions give the same numbers. What such a function calls must be inlined to gain
/// from it.
// The resolvers of cloned functions run before the thread sanitizer is up.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__)
#define MORVANTIDE_FOR_EACH_PROCESSOR __attribute__((target_clones("avx2", "default")))
#else
#define MORVANTIDE_FOR_EACH_PROCESSOR
#endif
