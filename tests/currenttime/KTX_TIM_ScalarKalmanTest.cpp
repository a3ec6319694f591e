#include "currenttime/KTX_TIM_ScalarKalman.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

double const NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

class ScalarKalman : public ::testing::Test {
 protected:
  LogCaptureC log;
  ScalarKalmanC kalman;
};

TEST_F(ScalarKalman, StartsAtTheGivenStateAndVariance) {
  kalman.init(60000.5, 4.0, 1.0);
  EXPECT_EQ(60000.5, kalman.value());
  EXPECT_EQ(2.0, kalman.stdDev());
  EXPECT_EQ(0u, log.assertionCount());
}

TEST_F(ScalarKalman, AssertsOnceWhenVarianceOrFloorIsNotPositive) {
  struct {
    double variance;
    double floor;
    std::size_t assertions;
  } const cases[] = {{1.0, 1.0, 0},         {std::numeric_limits<double>::denorm_min(), 1.0, 0},
                     {0.0, 1.0, 1},         {1.0, 0.0, 1},
                     {-1.0, 1.0, 1},        {0.0, 0.0, 1},
                     {NOT_A_NUMBER, 1.0, 1}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.variance << " " << c.floor);
    log.clear();
    kalman.init(1.0, c.variance, c.floor);
    EXPECT_EQ(
        std::vector<std::string>(c.assertions, "Initial variance or its floor is not positive!"),
        log.assertionTexts());
  }
}

TEST_F(ScalarKalman, KeepsWhatInitRefused) {
  kalman.init(7.0, 0.0, -1.0);
  EXPECT_EQ(7.0, kalman.value());
  EXPECT_EQ(0.0, kalman.stdDev());
}

TEST_F(ScalarKalman, PredictMovesTheStateAndAddsVariance) {
  kalman.init(10.0, 1.0, 0.5);
  kalman.predict(-2.5, 3.0);
  EXPECT_EQ(7.5, kalman.value());
  EXPECT_EQ(2.0, kalman.stdDev());
  kalman.predict(0.0, 0.0);
  EXPECT_EQ(7.5, kalman.value());
  EXPECT_EQ(2.0, kalman.stdDev());
}

TEST_F(ScalarKalman, PredictAssertsOnNegativeVarianceAndUsesIt) {
  kalman.init(10.0, 5.0, 0.5);
  kalman.predict(0.0, -1.0);
  EXPECT_THAT(log.assertionTexts(),
              ::testing::ElementsAre("Process noise is negative or not a number!"));
  EXPECT_EQ(2.0, kalman.stdDev());
  kalman.predict(0.0, NOT_A_NUMBER);
  EXPECT_THAT(log.assertionTexts(),
              ::testing::ElementsAre("Process noise is negative or not a number!",
                                     "Process noise is negative or not a number!"));
}

TEST_F(ScalarKalman, UpdateWeighsStateAndMeasurementByTheirVariances) {
  kalman.init(10.0, 1.0, 0.25);
  double correction = 0.0;
  kalman.update(14.0, 1.0, 1.0, correction);
  EXPECT_EQ(2.0, correction);
  EXPECT_EQ(12.0, kalman.value());
  EXPECT_EQ(std::sqrt(0.5), kalman.stdDev());
}

TEST_F(ScalarKalman, UpdateNeverGoesBelowTheFloor) {
  kalman.init(10.0, 1.0, 0.5625);
  double correction = 0.0;
  kalman.update(14.0, 1.0, 1.0, correction);
  EXPECT_EQ(0.75, kalman.stdDev());
}

TEST_F(ScalarKalman, UpdateTakesAMeasurementWithoutVarianceAsExact) {
  kalman.init(60376.25, 1.0, 0.25);
  double correction = 0.0;
  kalman.update(60377.75, 1.0, 0.0, correction);
  EXPECT_EQ(60377.75, kalman.value());
  EXPECT_EQ(1.5, correction);
  EXPECT_EQ(0.5, kalman.stdDev());
  EXPECT_EQ(0u, log.assertionCount());
}

TEST_F(ScalarKalman, UpdateUsesTheFactorOfTheState) {
  kalman.init(10.0, 1.0, 0.125);
  double correction = 0.0;
  kalman.update(24.0, 2.0, 4.0, correction);  // the gain is 2 / (1*2 + 4) * 1 by the written order
  EXPECT_EQ((24.0 - 2.0 * 10.0) * (2.0 / 6.0), correction);
  EXPECT_EQ(std::sqrt(1.0 - 2.0 / 6.0 * 2.0), kalman.stdDev());
}

TEST_F(ScalarKalman, UpdateAssertsOnNegativeVarianceAndUsesIt) {
  kalman.init(10.0, 2.0, 0.25);
  double correction = 0.0;
  kalman.update(14.0, 1.0, -1.0, correction);
  EXPECT_THAT(log.assertionTexts(),
              ::testing::ElementsAre("Observation variance is negative or not a number!"));
  EXPECT_EQ(8.0, correction);
}

}  // namespace
}  // namespace KTX::TIM::TEST
