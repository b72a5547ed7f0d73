#include "support/TestFileId.h"

/// The names of a test for people and for deriving file names: they need no identification.

TEST(TestTitle, ShortNames)
{
    VDFileIdHandle file = TestId("/data/road.v1.dat");
    EXPECT_EQ("road.v1", TestDescriptor(file, VTTestDescShortName));
    FIDSetRunNumber(file.Get(), 2);
    FIDSetModeNumber(file.Get(), 123, "Idle");
    EXPECT_EQ("road.v1_r02_m123", TestDescriptor(file, VTTestDescShortName));
    EXPECT_EQ("/data/road.v1_r02_m123", TestDescriptor(file, VTTestDescPathName));

    VDFileIdHandle stem = TestStemId("/data/road.v1", "dat");
    FIDSetBurstNumber(stem.Get(), 0);
    EXPECT_EQ("road.v1_b00", TestDescriptor(stem, VTTestDescShortName));
    FIDSetFolderTestManual(stem.Get(), 1);
    EXPECT_EQ("road_b00", TestDescriptor(stem, VTTestDescShortName));
    EXPECT_EQ("road_b00", TestDescriptor(stem, VTTestDescPathName));
}

TEST(TestTitle, DisplayTitlesAndLabels)
{
    VDFileIdHandle file = TestId("/data/road.dat");
    EXPECT_EQ("road.dat", TestDescriptor(file, VTTestDescTitle));
    EXPECT_EQ("/data/road.dat", TestDescriptor(file, VTTestDescFullTitle));
    EXPECT_EQ("road", TestDescriptor(file, VTTestDescBaseTitle));
    FIDSetRunNumber(file.Get(), 2);
    EXPECT_EQ("road (dat,Run-2)", TestDescriptor(file, VTTestDescListLabel));
    FIDSetBurstNumber(file.Get(), 0);
    EXPECT_EQ("road.dat (Run-2, Burst-0)", TestDescriptor(file, VTTestDescTitle));

    VDFileIdHandle stem = TestStemId("/data/road", "dat");
    FIDSetAssociatedFilename(stem.Get(), "/x/a.txt");
    EXPECT_EQ("road (dat, a.txt)", TestDescriptor(stem, VTTestDescTitle));
    FIDSetModeNumber(stem.Get(), 3, "Idle");
    EXPECT_EQ("/data/road;Idle (dat, a.txt, Mode-3)", TestDescriptor(stem, VTTestDescFullTitle));
    EXPECT_EQ("road (dat,Idle,Mode-3)", TestDescriptor(stem, VTTestDescListLabel));

    EXPECT_EQ("run", TestDescriptor(TestId("/data/run.mes/speed.sig"), VTTestDescTitle));
    EXPECT_EQ("run", TestDescriptor(TestId("/data/run.mes"), VTTestDescTitle));
}
