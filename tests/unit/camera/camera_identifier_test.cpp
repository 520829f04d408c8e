// camera_identifier_test.cpp
// The texts by which cameras are known to the host.
#include "camera/camera_identifier.h"

#include <gtest/gtest.h>

namespace {

std::wstring Identifier(const char* name, const char* model, const char* serial) {
  VmbCameraInfo_t camera{};
  camera.cameraName = name;
  camera.modelName = model;
  camera.serialString = serial;
  return IdentifierOf(camera).Str();
}

TEST(CameraIdentifier, IsMadeOfTheCamerasNameAndItsSerialNumber) {
  EXPECT_EQ(Identifier("Prosilica GT 1290", "GT1290 (02-2185A)", "50-0503"), L"Vimba_Prosilica GT 1290_50-0503");
}

TEST(CameraIdentifier, TakesTheModelOfAMantaInAnyCase) {
  for (const char* name : {"Manta", "MANTA", "manta", "mAnTa"}) {
    EXPECT_EQ(Identifier(name, "Manta G-504B (E0020002)", "7"), L"Vimba_Manta-G-504B_7") << name;
  }
}

TEST(CameraIdentifier, KeepsEveryNameThatIsNotTheFamilysAlone) {
  for (const char* name : {"Manta ", " Manta", "Manta G-504B", "Mant", ""}) {
    EXPECT_EQ(Identifier(name, "Manta G-504B (E0020002)", "7"), L"Vimba_" + ToWString(name).Str() + L"_7");
  }
}

TEST(CameraIdentifier, TrimsAMantasModelToWhatStandsBeforeItsFirstBracket) {
  struct Row {
    const char* model;
    const wchar_t* identifier;
  };
  const Row rows[] = {{"Manta G-504B", L"Vimba_Manta-G-504B_7"},
                      {"Manta G-504B (E0020002)", L"Vimba_Manta-G-504B_7"},
                      {"Manta G-504B(E0020002)", L"Vimba_Manta-G-504B_7"},
                      {"Manta_G-504B   (E0020002)", L"Vimba_Manta_G-504B_7"},
                      {"Manta G 504 C (a) (b)", L"Vimba_Manta-G-504-C_7"},
                      {"Manta G-504B ((x", L"Vimba_Manta-G-504B_7"},
                      {"Manta G-504B (", L"Vimba_Manta-G-504B_7"},
                      {"Manta G-504B?(E0020002)", L"Vimba_Manta-G-504B?_7"},
                      {"Manta  G", L"Vimba_Manta--G_7"},
                      {" Manta", L"Vimba_-Manta_7"},
                      {"Manta G-504B )", L"Vimba_Manta-G-504B-)_7"},
                      {"(E0020002)", L"Vimba__7"},
                      {"   ", L"Vimba__7"},
                      {"", L"Vimba__7"}};
  for (const Row& row : rows) EXPECT_EQ(Identifier("Manta", row.model, "7"), row.identifier) << row.model;
}

TEST(CameraIdentifier, NullTextsCountAsEmpty) {
  EXPECT_EQ(Identifier(nullptr, nullptr, nullptr), L"Vimba__");
  EXPECT_EQ(Identifier("Manta", nullptr, "7"), L"Vimba__7");
  EXPECT_EQ(Identifier("Cam", "Model", nullptr), L"Vimba_Cam_");
}

TEST(CameraIdentifier, TextsOfTheCameraAreNeverFormats) {
  EXPECT_EQ(Identifier("%s%n", "model", "%d"), L"Vimba_%s%n_%d");
}

TEST(CameraIdentifier, TextsOfTheCameraAreUtf8) {
  EXPECT_EQ(Identifier("K\xc3\xa4rcher", "model", "\xe6\x95\xb0"), L"Vimba_K\u00e4rcher_\u6570");
}

}  // namespace
