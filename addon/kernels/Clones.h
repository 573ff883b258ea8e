#pragma once

// QEL_CLONES before a function makes the compiler build it twice, for any x86-64 and for one with
// 256-bit vectors; the better one is chosen when the add-on is loaded. Sanitizers are not set up by
// then, and other compilers and machines have no such thing.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define QEL_CLONES __attribute__((target_clones("default", "avx2")))
#else
#define QEL_CLONES
#endif

// For what clones share: inlined, it is built for the clone's machine too.
#if defined(__GNUC__)
#define QEL_INLINED inline __attribute__((always_inline))
#else
#define QEL_INLINED inline
#endif
