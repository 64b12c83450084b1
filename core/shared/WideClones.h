#pragma once

// Marks a hot loop to be compiled for AVX-512, AVX2 and the baseline, the
// loader picking the widest the processor has: the build sets no -march, so
// one binary serves every x86-64 machine. Elsewhere it marks nothing, and so
// under clang, which clones no function template (the fuzz build uses clang,
// where speed does not matter).
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && defined(__GLIBC__)
#define KV_WIDE_CLONES __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define KV_WIDE_CLONES
#endif
