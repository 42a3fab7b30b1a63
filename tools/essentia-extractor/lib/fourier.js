'use strict';

/** Magnitudes of the spectra of real frames of a fixed size, a power of two, under a Hann window. */
class Fourier {
  constructor(size) {
    this.size = size;
    this.window = Float64Array.from({ length: size }, (_, index) =>
      0.5 - 0.5 * Math.cos((2 * Math.PI * index) / size));
    this.cosines = Float64Array.from({ length: size / 2 }, (_, index) =>
      Math.cos((2 * Math.PI * index) / size));
    this.sines = Float64Array.from({ length: size / 2 }, (_, index) =>
      -Math.sin((2 * Math.PI * index) / size));
    this.order = bitReversed(size);
    this.real = new Float64Array(size);
    this.imaginary = new Float64Array(size);
  }

  /**
   * The magnitudes, 0 to half the size, of the frames at two places in a signal. Two real frames
   * are one complex one, which saves half of the work.
   */
  magnitudesOfTwo(signal, first, second, firstResult, secondResult) {
    const { size, window, order, real, imaginary } = this;
    for (let index = 0; index < size; index++) {
      real[order[index]] = signal[first + index] * window[index];
      imaginary[order[index]] = signal[second + index] * window[index];
    }
    this.transform();
    for (let bin = 0; bin <= size / 2; bin++) {
      const mirror = (size - bin) % size;
      firstResult[bin] =
        length(real[bin] + real[mirror], imaginary[bin] - imaginary[mirror]) / 2;
      secondResult[bin] =
        length(imaginary[bin] + imaginary[mirror], real[mirror] - real[bin]) / 2;
    }
  }

  transform() {
    const { size, real, imaginary, cosines, sines } = this;
    for (let half = 1; half < size; half *= 2) {
      const stride = size / (2 * half);
      for (let start = 0; start < size; start += 2 * half) {
        for (let offset = 0; offset < half; offset++) {
          const low = start + offset;
          const high = low + half;
          const cosine = cosines[offset * stride];
          const sine = sines[offset * stride];
          const turnedReal = real[high] * cosine - imaginary[high] * sine;
          const turnedImaginary = real[high] * sine + imaginary[high] * cosine;
          real[high] = real[low] - turnedReal;
          imaginary[high] = imaginary[low] - turnedImaginary;
          real[low] += turnedReal;
          imaginary[low] += turnedImaginary;
        }
      }
    }
  }
}

function length(real, imaginary) {
  return Math.sqrt(real * real + imaginary * imaginary);
}

function bitReversed(size) {
  const order = new Uint32Array(size);
  for (let index = 1; index < size; index++) {
    order[index] = (order[index >> 1] >> 1) | (index & 1 ? size >> 1 : 0);
  }
  return order;
}

module.exports = { Fourier };
