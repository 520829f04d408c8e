// masking_test.cpp
// What a report says of people and of their cameras.
#include "check/masking.h"

#include "gtest/gtest.h"

using namespace Kelcam;

namespace {

CheckFacts Facts() {
  CheckFacts facts;
  facts.system.cameras = {{1, "DEV_000F31034C65", "Manta", "50-0536953957", "169.254.76.101", "full", false},
                          {2, "DEV_2", "Manta", "2", {}, "full", false}};
  return facts;
}

Masking Anonymous() {
  Masking masking("/home/anna");
  masking.MaskCameras(Facts(), "anna");
  return masking;
}

TEST(Masking, TheHomeFolderIsNeverWritten) {
  const Masking masking("/home/anna");

  EXPECT_EQ(masking.Masked("/home/anna/vimba/libVimbaC.so of 50-0536953957"), "~/vimba/libVimbaC.so of 50-0536953957");
  EXPECT_EQ(Masking("").Masked("/home/anna"), "/home/anna");
  EXPECT_EQ(Masking("/").Masked("/opt/vimba"), "/opt/vimba");
}

TEST(Masking, TheSameSerialNumberGetsTheSameMask) {
  const Masking masking = Anonymous();

  EXPECT_EQ(masking.Masked("Vimba_Manta_50-0536953957 (50-0536953957), DEV_000F31034C65"),
            "Vimba_Manta_serial-1 (serial-1), id-1");
}

TEST(Masking, EveryAddressGetsOneOfItsOwn) {
  const Masking masking = Anonymous();

  EXPECT_EQ(masking.Masked("169.254.76.101, 10.0.0.1, 169.254.76.101"), "address-1, address-2, address-1");
  EXPECT_EQ(masking.Masked("of 10.0.0.1"), "of address-2");
}

TEST(Masking, TheUsersNameIsHiddenInPathsAlone) {
  const Masking masking = Anonymous();

  EXPECT_EQ(masking.Masked("/mnt/data/anna/x.ini, D:\\anna\\x.ini, anna"),
            "/mnt/data/user/x.ini, D:\\user\\x.ini, anna");
}

// "2" is in every other number.
TEST(Masking, AShortSerialNumberStays) { EXPECT_EQ(Anonymous().Masked("22 images, serial 2"), "22 images, serial 2"); }

TEST(Masking, ReachesEveryTextOfADocument) {
  const Json document = {{"camera", "50-0536953957"}, {"points", {{{"found", "at 169.254.76.101"}, {"count", 3}}}}};

  EXPECT_EQ(Anonymous().MaskedDocument(document).dump(),
            R"({"camera":"serial-1","points":[{"found":"at address-1","count":3}]})");
}

}  // namespace
