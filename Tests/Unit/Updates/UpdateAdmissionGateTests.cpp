#include "MRMUpdatePolicy/UpdateAdmissionGate.h"
#include "Support/Testing.h"

TEST(UpdateActivityRegister, KeepsDictationsAndInstallationsApart) {
  UpdateActivityRegister gate;
  const auto first = gate.begin();
  const auto second = gate.begin();
  ASSERT_TRUE(first && second);
  EXPECT_NE(*first, *second);
  EXPECT_FALSE(gate.beginInstallation());
  gate.finish(*first);
  EXPECT_FALSE(gate.beginInstallation());
  gate.finish(*first);
  EXPECT_FALSE(gate.beginInstallation()) << "a token given back twice ends no other activity";
  gate.finish(*second);
  EXPECT_TRUE(gate.beginInstallation());
  EXPECT_FALSE(gate.beginInstallation()) << "one at a time";
  EXPECT_FALSE(gate.begin());
  gate.endInstallation();
  EXPECT_TRUE(gate.begin());
}
