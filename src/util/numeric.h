#pragma once

#include "util/slabarray.h"

#include <boost/numeric/ublas/banded.hpp>
#include <boost/numeric/ublas/matrix.hpp>
#include <boost/numeric/ublas/vector.hpp>

#include <limits>

/// The numeric types of records and spectra: uBLAS vectors and bands whose elements lie in slab memory.
using RealVector = boost::numeric::ublas::vector<double, SlabArray>;
using BandMatrix = boost::numeric::ublas::banded_matrix<double, boost::numeric::ublas::row_major, SlabArray>;
/// Dense row-major matrices, of instruments and smoothing, lie on the heap.
using RealMatrix = boost::numeric::ublas::matrix<double>;

/// "No value", everywhere. Always this quiet NaN, never the result of 0.0 / 0.0, whose sign differs.
constexpr double noValue = std::numeric_limits<double>::quiet_NaN();
