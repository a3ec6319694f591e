#include "support/KTX_TIM_ProcessObject.h"

#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Else the end of the process would destroy what it holds.
static_assert(std::is_trivially_destructible_v<ProcessObjectC<std::string>>);
static_assert(!std::is_copy_constructible_v<ProcessObjectC<std::string>>);

// Each object is a number that it adds to a list when it is destroyed.
class NumberedC {
 public:
  NumberedC(int objectNumber, std::vector<int>& destroyedNumbers)
      : number(objectNumber), destroyed(destroyedNumbers) {}

  BuiltObjectsC::EntryC entry{this, [](void* object) { static_cast<NumberedC*>(object)->end(); },
                              nullptr};

 private:
  void end() { destroyed.push_back(number); }

  int const number;
  std::vector<int>& destroyed;
};

TEST(BuiltObjects, AreDestroyedOnceInReverseOrder) {
  std::vector<int> destroyed;
  BuiltObjectsC objects;
  objects.destroyAll();
  EXPECT_THAT(destroyed, IsEmpty());
  NumberedC first(1, destroyed);
  NumberedC second(2, destroyed);
  NumberedC third(3, destroyed);
  for (NumberedC* const object : {&first, &second, &third}) {
    objects.add(object->entry);
  }
  objects.destroyAll();
  EXPECT_THAT(destroyed, ElementsAre(3, 2, 1));
  objects.destroyAll();
  EXPECT_EQ(3U, destroyed.size());
}

TEST(BuiltObjects, TakeThoseOfSeveralThreads) {
  constexpr int THREADS = 8;
  std::vector<int> destroyed;
  std::vector<NumberedC> numbered;
  for (int number = 0; number < THREADS; ++number) {
    numbered.emplace_back(number, destroyed);
  }
  BuiltObjectsC objects;
  std::vector<std::thread> threads;
  for (NumberedC& object : numbered) {
    object.entry.object = &object;
    threads.emplace_back([&] { objects.add(object.entry); });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  objects.destroyAll();
  EXPECT_THAT(destroyed, ::testing::UnorderedElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST(BuiltObjects, MayBuildAnotherWhileTheyAreDestroyed) {
  static BuiltObjectsC objects;
  static std::vector<int> destroyed;
  static NumberedC late(2, destroyed);
  int dummy = 0;
  BuiltObjectsC::EntryC early{&dummy, [](void* /*object*/) { objects.add(late.entry); }, nullptr};
  objects.add(early);
  objects.destroyAll();
  EXPECT_THAT(destroyed, ElementsAre(2));
}

TEST(ProcessObject, HoldsWhatItBuilds) {
  static ProcessObjectC<std::string> text(3U, 'x');
  EXPECT_EQ("xxx", *text);
  (*text) += 'y';
  EXPECT_EQ("xxxy", *text);
}

}  // namespace
}  // namespace KTX::TIM::TEST
