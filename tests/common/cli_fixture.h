#pragma once
// The fixture of the command-line tests: the test is skipped when tervale-cli has not been
// built, and it gets a scratch folder of its own, `dir_`, named after its test suite.
#include <gtest/gtest.h>

#include <string>

#include "common/cli_runner.h"
#include "common/scratch.h"

namespace tervale::testcli {

class CliFixture : public ::testing::Test {
 protected:
  // A fixture with a SetUp of its own calls this first and returns when IsSkipped().
  void SetUp() override {
    if (!CliBuilt()) GTEST_SKIP() << "tervale-cli is not built";
  }

  ScratchDir dir_{::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name()};
};

}  // namespace tervale::testcli
