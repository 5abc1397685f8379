// What the source reads and sets of the negotiated values.
#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

using Lines = std::vector<std::string>;

class SourceCapabilitiesTest : public SourceTest {
 protected:
  static std::string Missing(const char* name) {
    return std::string("FindCapStorageItem: unable to find support for cap ") + name + ".";
  }
};

TEST_F(SourceCapabilitiesTest, ReadsWhatHasBeenNegotiated) {
  Open();
  Negotiate(CAP_XFERCOUNT, TWTY_UINT16, 0xfffe);
  EXPECT_EQ(source_->GetXferCount(), -2);
  Negotiate(ICAP_PIXELFLAVOR, TWTY_UINT16, 7);
  EXPECT_EQ(source_->GetPixelFlavor(), 7);
  Negotiate(ICAP_IMAGEFILEFORMAT, TWTY_UINT16, TWFF_JFIF);
  EXPECT_EQ(source_->GetImageFileFormat(), TWFF_JFIF);
  EXPECT_EQ(source_->GetPlanarChunky(), 0);
  Negotiate(ICAP_UNITS, TWTY_UINT16, TWUN_CENTIMETERS);
  EXPECT_EQ(source_->ConvertFromInches(8, 800), 20.32);
  Negotiate(ICAP_BITDEPTH, TWTY_UINT16, 8);
  EXPECT_TRUE(source_->Is8BitGrayscale());
  EXPECT_FALSE(source_->Is16BitGrayscale());
  Negotiate(ICAP_BITDEPTH, TWTY_UINT16, 16);
  EXPECT_TRUE(source_->Is16BitGrayscale());
  EXPECT_FALSE(source_->Is8BitGrayscale());
  EXPECT_EQ(source_->GetBitsPerPixel(TWPT_GRAY), 16);
  EXPECT_EQ(source_->GetSamplesPerPixel(TWPT_GRAY), 1);
  EXPECT_EQ(source_->GetBitsPerPixel(TWPT_RGB), 8);
  EXPECT_EQ(source_->GetSamplesPerPixel(TWPT_RGB), 1);
}

TEST_F(SourceCapabilitiesTest, FallsBackWithoutTheCapability) {
  StartTrace();
  source_->capabilities().Clear();
  Trace();
  EXPECT_EQ(source_->GetXferCount(), -1);
  EXPECT_EQ(source_->ConvertFromInches(8, 800), 800.0);
  EXPECT_EQ(source_->GetPixelFlavor(), 0);
  EXPECT_EQ(source_->GetBitsPerPixel(TWPT_GRAY), 8);
  EXPECT_EQ(source_->GetSamplesPerPixel(TWPT_GRAY), 8);
  EXPECT_EQ(source_->GetPlanarChunky(), 0);
  EXPECT_EQ(source_->GetImageFileFormat(), TWFF_BMP);
  EXPECT_EQ(source_->GetCurrentBitDepthEntry(), nullptr);
  EXPECT_FALSE(source_->Is8BitGrayscale());
  EXPECT_FALSE(source_->Is16BitGrayscale());
  EXPECT_FALSE(source_->Set8BitGrayscaleCapture());
  const std::string depth = Missing("ICAP_BITDEPTH");
  EXPECT_EQ(Trace(), (Lines{Missing("CAP_XFERCOUNT"), Missing("ICAP_UNITS"),
                            Missing("ICAP_PIXELFLAVOR"), depth, depth, Missing("ICAP_PLANARCHUNKY"),
                            Missing("ICAP_IMAGEFILEFORMAT"), depth, depth, depth, depth}));
}

TEST_F(SourceCapabilitiesTest, SwitchesTheGrayscaleDepth) {
  source_->capabilities().Load();
  auto* pixelTypes = source_->capabilities().Find<ListCapability>(ICAP_PIXELTYPE);
  auto* depths = source_->capabilities().Find<BitDepthCapability>(ICAP_BITDEPTH);
  pixelTypes->currentValue = TWPT_RGB;
  StartTrace();
  Trace();
  const std::string current = "      Current bit depth: Grayscale";
  EXPECT_TRUE(source_->Set16BitGrayscaleCapture());
  EXPECT_EQ(pixelTypes->currentValue, TWPT_GRAY);
  EXPECT_EQ(Trace(), (Lines{current, "Set16BitGrayscaleCapture: Grayscale set to 16-bit."}));
  BitDepthEntry* entry = source_->GetCurrentBitDepthEntry();
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->currentDepth, 16);
  EXPECT_EQ(entry->defaultDepth, 8);
  Trace();
  EXPECT_TRUE(source_->Set8BitGrayscaleCapture());
  EXPECT_EQ(Trace(), (Lines{current, "Set8BitGrayscaleCapture: Grayscale set to 8-bit."}));
  EXPECT_EQ(entry->currentDepth, 8);

  entry->supportedCount = 0;
  EXPECT_FALSE(source_->Set16BitGrayscaleCapture());
  EXPECT_FALSE(source_->Set8BitGrayscaleCapture());
  EXPECT_EQ(
      Trace(),
      (Lines{current, "Set8BitGrayscaleCapture: 16-bit grayscale is not a supported bit depth.",
             current, "Set8BitGrayscaleCapture: 8-bit grayscale is not a supported bit depth."}));
  EXPECT_EQ(entry->currentDepth, 8);

  depths->KeepPixelType(TWPT_RGB);
  EXPECT_FALSE(source_->Set8BitGrayscaleCapture());
  EXPECT_EQ(Trace(), Lines{current});
  pixelTypes->SetOnly(TWPT_RGB);
  EXPECT_FALSE(source_->Set8BitGrayscaleCapture());
  EXPECT_FALSE(source_->Set16BitGrayscaleCapture());
  EXPECT_EQ(Trace(), (Lines{"Set8BitGrayscaleCapture: GRAYSCALE is not a valid pixel type.",
                            "Set16BitGrayscaleCapture: GRAYSCALE is not a valid pixel type."}));
  source_->capabilities().RemoveCapability(ICAP_PIXELTYPE);
  Trace();
  EXPECT_FALSE(source_->Set8BitGrayscaleCapture());
  EXPECT_EQ(Trace(), Lines{Missing("ICAP_PIXELTYPE")});
}

}  // namespace
}  // namespace zyr
