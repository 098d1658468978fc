// The digit display's cells: which segments light for each character, and where the
// text lands in the row.
#include "controls/DigitDisplay.h"

#include <gtest/gtest.h>

namespace lumenor::controls {
namespace {

using D = CMyDigitDisplay;

TEST(DigitDisplay, SevenSegmentDigitsLightTheRightSegments) {
  // Drawn out: a top, b upper right, c lower right, d bottom, e lower left, f upper left, g middle.
  const uint16_t expected[10] = {
      D::kA | D::kB | D::kC | D::kD | D::kE | D::kF,
      D::kB | D::kC,
      D::kA | D::kB | D::kD | D::kE | D::kG,
      D::kA | D::kB | D::kC | D::kD | D::kG,
      D::kB | D::kC | D::kF | D::kG,
      D::kA | D::kC | D::kD | D::kF | D::kG,
      D::kA | D::kC | D::kD | D::kE | D::kF | D::kG,
      D::kA | D::kB | D::kC,
      D::kA | D::kB | D::kC | D::kD | D::kE | D::kF | D::kG,
      D::kA | D::kB | D::kC | D::kD | D::kF | D::kG,
  };
  for (int digit = 0; digit < 10; ++digit) {
    EXPECT_EQ(D::SegmentsOf(static_cast<wchar_t>(L'0' + digit), false), expected[digit]) << "digit " << digit;
  }
  EXPECT_EQ(D::SegmentsOf(L'x', false), 0) << "what the display cannot show stays blank";
}

TEST(DigitDisplay, FourteenSegmentsSplitTheMiddleBar) {
  EXPECT_EQ(D::SegmentsOf(L'-', true), D::kG | D::kMiddleRight);
  EXPECT_EQ(D::SegmentsOf(L'1', true), D::kB | D::kC);
  EXPECT_EQ(D::SegmentsOf(L'8', true) & (D::kG | D::kMiddleRight), D::kG | D::kMiddleRight);
}

TEST(DigitDisplay, NumbersAlignInTheRowAndKeepTheirLastDigitsWhenTooLong) {
  const uint16_t zero = D::SegmentsOf(L'0', false);
  const uint16_t one = D::SegmentsOf(L'1', false);
  EXPECT_EQ(D::Layout(L"10", 4, D::kAlignRight), (std::vector<uint16_t>{0, 0, one, zero}));
  EXPECT_EQ(D::Layout(L"10", 4, 0), (std::vector<uint16_t>{one, zero, 0, 0}));
  EXPECT_EQ(D::Layout(L"1100", 2, D::kAlignRight), (std::vector<uint16_t>{zero, zero}));
  EXPECT_EQ(D::Layout(L"", 3, D::kAlignRight), (std::vector<uint16_t>{0, 0, 0}));
}

}  // namespace
}  // namespace lumenor::controls
