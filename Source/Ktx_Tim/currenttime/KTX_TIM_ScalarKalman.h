#ifndef KTX_TIM_SCALARKALMAN_H
#define KTX_TIM_SCALARKALMAN_H

namespace KTX::TIM {

/// A Kalman filter with one state. Every value is in days, every variance in days squared. An
/// argument out of range raises an assertion and is used all the same.
class ScalarKalmanC {
 public:
  /// Starts at x0 with the variance p0; the variance never falls below minVariance. Both must be
  /// positive.
  void init(double x0, double p0, double minVariance);

  /// Moves the state by dx and adds q to its variance; q must not be negative.
  void predict(double dx, double q);

  /// Takes in the measurement z of h times the state with the variance r, which must not be
  /// negative; 0 takes z as exact. correction receives what the state moved by.
  void update(double z, double h, double r, double& correction);

  double value() const { return x; }
  double stdDev() const;

 private:
  double x = 0.0;
  double p = 0.0;
  double pMin = 0.0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_SCALARKALMAN_H
