// A test that fails: what GoogleTest's report says of an error of the library is compared by the build.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/GoogleTest.hpp>

TEST(ErrorMessages, TellWhichErrorEndedATest) {
    const auto array = foundation::vexadata::ArrayFactory().createArray<double>({2, 2});
    EXPECT_EQ(array[2][0], 0.0);
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new vexa::interop::ErrorMessages);
    return RUN_ALL_TESTS();
}
