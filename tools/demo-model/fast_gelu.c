// GELU (tanh form) and its derivative on bfloat16 arrays, several times as fast
// as PyTorch 1.13 on a processor. gelu(x) = x * sigmoid(A * x + B * x^3).
//
// gcc -O3 -march=native -ffast-math -fopenmp -shared -fPIC fast_gelu.c -lm

#include <math.h>
#include <stdint.h>

#define A 1.5957691216f        // 2 * sqrt(2 / pi)
#define B 0.0713548163f        // A * 0.044715
#define LARGEST_EXPONENT 30.0f // keeps expf within range

static inline float from_bfloat16(uint16_t bits) {
  union {
    uint32_t bits;
    float value;
  } x = {.bits = (uint32_t)bits << 16};
  return x.value;
}

// Rounds to nearest, ties to even.
static inline uint16_t to_bfloat16(float value) {
  union {
    float value;
    uint32_t bits;
  } x = {.value = value};
  return (uint16_t)((x.bits + 0x7fffu + ((x.bits >> 16) & 1u)) >> 16);
}

static inline float gate(float x) {
  float t = x * (A + B * x * x);
  t = t < -LARGEST_EXPONENT ? -LARGEST_EXPONENT : t;
  t = t > LARGEST_EXPONENT ? LARGEST_EXPONENT : t;
  return 1.0f / (1.0f + expf(-t));
}

void gelu_forward(const uint16_t *restrict input, uint16_t *restrict output,
                  long count) {
#pragma omp parallel for simd schedule(static)
  for (long i = 0; i < count; i++) {
    float x = from_bfloat16(input[i]);
    output[i] = to_bfloat16(x * gate(x));
  }
}

void gelu_backward(const uint16_t *restrict input,
                   const uint16_t *restrict output_gradient,
                   uint16_t *restrict input_gradient, long count) {
#pragma omp parallel for simd schedule(static)
  for (long i = 0; i < count; i++) {
    float x = from_bfloat16(input[i]);
    float g = gate(x);
    float slope = g + x * g * (1.0f - g) * (A + 3.0f * B * x * x);
    input_gradient[i] =
        to_bfloat16(from_bfloat16(output_gradient[i]) * slope);
  }
}
