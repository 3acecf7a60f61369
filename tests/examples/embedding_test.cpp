// Checks that the embedding example prints what its comments say.
#include <gtest/gtest.h>

#include "support/process.h"

namespace morvel::ruby::tests {
namespace {

TEST(EmbeddingExample, PrintsItsResults) {
    const ProcessOutcome outcome = runProcess(MORVELTESK_EMBEDDING_EXAMPLE, {});
    EXPECT_EQ(0, outcome.status);
    EXPECT_EQ("", outcome.error);
    EXPECT_EQ(
        "result: Ada #1: 4\n"
        "total: 16\n"
        "scores: [3, 5, 8, 16]\n"
        "image, first run: 20\n"
        "image, second run: 30\n"
        "failure: failing:1:4: expected expression\n"
        "failure: failing:1: undefined variable or function 'missing'\n"
        "failure: distance expects exactly 2 arguments\n"
        "failure: enough\n"
        "compile error: failing:1:11: expected 'end' after while block\n",
        outcome.output);
}

}  // namespace
}  // namespace morvel::ruby::tests
