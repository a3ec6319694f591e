#include "currenttime/KTX_TIM_ScalarKalman.h"

#include <cmath>

#include "KTX/TIM/KTX_TIM_LogAssert.h"

namespace KTX::TIM {

void ScalarKalmanC::init(double x0, double p0, double minVariance) {
  if (!(p0 > 0.0 && minVariance > 0.0)) {
    logAssertion("Initial variance or its floor is not positive!");
  }
  x = x0;
  p = p0;
  pMin = minVariance;
}

void ScalarKalmanC::predict(double dx, double q) {
  if (!(q >= 0.0)) {
    logAssertion("Process noise is negative or not a number!");
  }
  x = x + dx;
  p = p + q;
}

void ScalarKalmanC::update(double z, double h, double r, double& correction) {
  if (!(r >= 0.0)) {
    logAssertion("Observation variance is negative or not a number!");
  }
  double const k = h / (p * h + r) * p;
  double const corr = (z - h * x) * k;
  x = x + corr;
  p = p - k * h * p;
  if (pMin > p) {
    p = pMin;
  }
  correction = corr;
}

double ScalarKalmanC::stdDev() const {
  return std::sqrt(p);
}

}  // namespace KTX::TIM
