#include <gtest/gtest.h>

#include "document/file_watch.h"
#include "document/save_prompt.h"

namespace {

TEST(FileWatch, QuestionForAFileGoneFromItsFolder) {
  EXPECT_EQ(FileChangedText(kFileGoneFromFolder, L"a.txt"),
            L"\"a.txt\" was moved or renamed outside of Tavro.\n\nDo you want to save it to the original location?");
}

TEST(FileWatch, QuestionForAFileGoneWithItsFolder) {
  EXPECT_EQ(FileChangedText(kFileGoneWithFolder, L"b.md"),
            L"\"b.md\" was deleted from disk.\n\nDo you want to save it to the original location?");
}

TEST(FileWatch, TitleKeepsItsGarbledDash) {
  EXPECT_STREQ(kFileChangedTitle, L"Tavro \u00e2\u20ac\u201d File Changed");
}

Activation Plain() {
  Activation activation;
  activation.active = true;
  return activation;
}

TEST(FileWatch, ActivationOfADocumentWithAPathLooks) { EXPECT_TRUE(WatchLooksAt(Plain())); }

TEST(FileWatch, DeactivationDoesNotLook) {
  Activation activation = Plain();
  activation.active = false;
  EXPECT_FALSE(WatchLooksAt(activation));
}

TEST(FileWatch, UntitledDocumentNeverAsks) {
  Activation activation = Plain();
  activation.untitled = true;
  EXPECT_FALSE(WatchLooksAt(activation));
}

TEST(FileWatch, ViewerNeverAsks) {
  Activation activation = Plain();
  activation.viewer = true;
  EXPECT_FALSE(WatchLooksAt(activation));
}

TEST(FileWatch, BackFromOwnBoxOrWhileAskingDoesNotAsk) {
  Activation fromOwn = Plain();
  fromOwn.fromOwnWindow = true;
  EXPECT_FALSE(WatchLooksAt(fromOwn));
  Activation busy = Plain();
  busy.busy = true;
  EXPECT_FALSE(WatchLooksAt(busy));
}

}  // namespace
