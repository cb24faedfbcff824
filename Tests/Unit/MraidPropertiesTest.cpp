#include <limits>

#include "AdController/AdGenerator/XMRAIDExpandProperties.h"
#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"
#include "AdController/AdGenerator/XMRAIDResizeProperties.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

using MraidProperties = TransportTest;

// Reads each record from its arguments and prints it: one text shows every field.
template <typename Record>
void expectDescriptions(const std::vector<std::pair<MraidParameters, std::string>>& cases) {
  for (const auto& [args, expected] : cases) {
    EXPECT_EQ(Record::propertiesFromArgs(args).description(), expected);
  }
}

TEST_F(MraidProperties, ReadsExpandProperties) {
  expectDescriptions<XMRAIDExpandProperties>({
      {{}, "{width:0,height:0,useCustomClose:false}"},
      {{{"width", "320"}, {"height", "480"}, {"useCustomClose", "true"}},
       "{width:320,height:480,useCustomClose:true}"},
      {{{"width", "300px"}, {"height", "x"}, {"useCustomClose", "TRUE"}},
       "{width:300,height:0,useCustomClose:false}"},
      {{{"width", " \n+12"}, {"height", "-7.9"}, {"useCustomClose", "1"}},
       "{width:12,height:-7,useCustomClose:false}"},
      {{{"width", "+-12"}, {"height", "- 7"}}, "{width:0,height:0,useCustomClose:false}"},
      {{{"width", "99999999999999999999"}, {"height", "-99999999999999999999"}},
       "{width:9223372036854775807,height:-9223372036854775808,useCustomClose:false}"},
      {{{"Width", "320"}, {"unknown", "1"}}, "{width:0,height:0,useCustomClose:false}"},
  });
}

TEST_F(MraidProperties, ReadsResizeProperties) {
  expectDescriptions<XMRAIDResizeProperties>({
      {{},
       "{width:0,height:0,customClosePosition:'top-right',offsetX:0,offsetY:0,"
       "allowOffscreen:false}"},
      {{{"width", "300"},
        {"height", "250"},
        {"customClosePosition", "bottom-center"},
        {"offsetX", "-50"},
        {"offsetY", "20"},
        {"allowOffscreen", "true"}},
       "{width:300,height:250,customClosePosition:'bottom-center',offsetX:-50,offsetY:20,"
       "allowOffscreen:true}"},
      {{{"customClosePosition", "Center"}, {"allowOffscreen", "yes"}},
       "{width:0,height:0,customClosePosition:'top-right',offsetX:0,offsetY:0,"
       "allowOffscreen:false}"},
  });
}

TEST_F(MraidProperties, NamesEveryClosePosition) {
  const std::vector<std::string> names{"top-left",    "top-center",    "top-right",   "center",
                                       "bottom-left", "bottom-center", "bottom-right"};
  for (std::size_t value = 0; value < names.size(); ++value) {
    const auto read =
        XMRAIDResizeProperties::propertiesFromArgs({{"customClosePosition", names[value]}});
    EXPECT_EQ(static_cast<std::size_t>(read.customClosePosition), value);
    EXPECT_EQ(nameOf(read.customClosePosition), names[value]);
  }
  for (const int value : {-1, 7, std::numeric_limits<int>::max()}) {
    XMRAIDResizeProperties properties;
    properties.customClosePosition = static_cast<CustomClosePosition>(value);
    EXPECT_EQ(properties.description(),
              "{width:0,height:0,customClosePosition:'(null)',offsetX:0,offsetY:0,"
              "allowOffscreen:false}");
  }
}

TEST_F(MraidProperties, ReadsOrientationProperties) {
  expectDescriptions<XMRAIDOrientationProperties>({
      {{}, "{allowOrientationChange:true,forceOrientation:'none'}"},
      {{{"allowOrientationChange", "false"}, {"forceOrientation", "portrait"}},
       "{allowOrientationChange:false,forceOrientation:'portrait'}"},
      {{{"allowOrientationChange", "0"}, {"forceOrientation", "landscape"}},
       "{allowOrientationChange:true,forceOrientation:'landscape'}"},
      {{{"allowOrientationChange", "False"}, {"forceOrientation", "Portrait"}},
       "{allowOrientationChange:true,forceOrientation:'none'}"},
      {{{"forceOrientation", "none"}}, "{allowOrientationChange:true,forceOrientation:'none'}"},
  });
  EXPECT_EQ(nameOf(static_cast<ForceOrientation>(3)), "none");
}

}  // namespace
}  // namespace tavo::test
