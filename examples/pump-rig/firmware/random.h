#pragma once

#include <stdint.h>

// A small repeatable generator (xorshift); the same seed gives the same run on every machine.

typedef struct
{
    uint64_t state;
} Random;

static inline Random randomFromSeed(uint64_t seed)
{
    // Spread the seed over all bits; the state must not be 0.
    return (Random){(seed + 1) * 0x9E3779B97F4A7C15u | 1u};
}

static inline uint32_t randomBits(Random* random)
{
    random->state ^= random->state << 13;
    random->state ^= random->state >> 7;
    random->state ^= random->state << 17;
    return (uint32_t)(random->state >> 32);
}

/// A whole number from 0 to count - 1; count must not be 0.
static inline uint32_t randomBelow(Random* random, uint32_t count)
{
    return (uint32_t)(((uint64_t)randomBits(random) * count) >> 32);
}

/// Evenly spread over [low, high].
static inline double randomBetween(Random* random, double low, double high)
{
    return low + (high - low) * (randomBits(random) * (1.0 / 4294967295.0));
}
