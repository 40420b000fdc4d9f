#include <ktcore/ktintllanguagetext.h>
#include <ktcore/ktsingleton.h>

#include <gmock/gmock.h>

#include <atomic>
#include <dlfcn.h>
#include <thread>
#include <vector>

namespace {

struct Counted
{
    Counted() { ++built; }

    static inline std::atomic<int> built = 0;
};

} // namespace

TEST(KtSingleton, IsBuiltOnceThoughFourThreadsAskAtTheSameTime)
{
    std::atomic<bool> go = false;
    std::vector<Counted*> seen(4);
    std::vector<std::thread> threads;
    threads.reserve(seen.size());
    for (Counted*& place : seen) {
        threads.emplace_back([&go, &place] {
            while (!go) {
                std::this_thread::yield();
            }
            place = &KtSingleton<Counted>::Instance();
        });
    }
    EXPECT_EQ(Counted::built, 0) << "built before its first use";

    go = true;
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(Counted::built, 1);
    EXPECT_THAT(seen, testing::Each(&KtSingleton<Counted>::Instance()));
}

TEST(KtSingleton, TheLanguageServiceLivesInTheCoreLibraryForAllThatUseIt)
{
    Dl_info library = {};

    ASSERT_NE(::dladdr(&KtSingleton<KtIntlLanguageTextImp>::Instance(), &library), 0);

    EXPECT_THAT(library.dli_fname, testing::HasSubstr("libktcore.so"));
}
