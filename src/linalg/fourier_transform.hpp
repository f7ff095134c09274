// A planned complex one-dimensional in-place transform of fixed length, double precision.
// Forward scale 1/P, backward scale 1: the forward transform of a record gives the amplitudes,
// the backward transform of a spectrum gives the time series itself.
// One plan serves many threads: each call works on the caller's own array.
#pragma once

#include <complex>
#include <cstddef>

class FourierTransform {
  public:
    explicit FourierTransform(size_t length);
    ~FourierTransform();
    FourierTransform(const FourierTransform&) = delete;
    FourierTransform& operator=(const FourierTransform&) = delete;

    size_t Length() const { return length_; }
    // In place; data holds Length() values. Thread-safe for distinct arrays.
    void Forward(std::complex<double>* data) const;
    void Backward(std::complex<double>* data) const;

  private:
    size_t length_;
    void* forwardPlan_;
    void* backwardPlan_;
};
