// SPDX-License-Identifier: MIT
// What is left of the services and jobs of the example application when memory runs out.
#include <truss/support/jobstest.h>

#include <support/failingallocation.h>

#include "truss/jobs/study.h"
#include "truss/jobs/studyreport.h"
#include "truss/jobs/studytask.h"
#include "truss/shell/consolestatus.h"
#include "truss/shell/services.h"

#include <kel/autodelete.h>
#include <kel/branding.h>
#include <kel/dynamicfactory.h>

#include <limits>
#include <memory>
#include <utility>

TEST(MemoryExhaustionServices, AreInstalledOrDestroyedOnce)
{
    const auto tried = failEachAllocation(
        []
        {
            // Credits cannot be taken back otherwise.
            std::destroy_at(Branding::getSingleton());
            std::construct_at(Branding::getSingleton());
            return 0;
        },
        [](int) { truss::Services::install(); },
        [](int, bool threw)
        {
            auto& factory = DynamicFactory::getSingleton();
            const auto take = [&](const BulletinKey& key)
            {
                if (!factory.hasKey(key))
                    return false;
                const AutoDelete destroyed(factory.removeByKey(key));
                return true;
            };
            const bool hasLog = take(Kel::Log::getStaticKey());
            const bool hasBell = take(Sound::getStaticKey());
            const bool hasPlatform = take(Platform::getStaticKey());
            EXPECT_TRUE(threw || (hasLog && hasBell && hasPlatform));
            std::destroy_at(Branding::getSingleton());
            std::construct_at(Branding::getSingleton());
        });
    EXPECT_GT(tried, 10u);
}

TEST(MemoryExhaustionServices, ProgressThatCannotBeShownStopsNothing)
{
    truss::ConsoleStatus status;
    status.setStatus("a title that is long enough to need a block", 0);
    status.setBusy(true);
    const FailingAllocation fault(1, Failing::FromThenOn);
    EXPECT_NO_THROW(status.updateEvents(50));
    EXPECT_NO_THROW(status.turnWheel());
    EXPECT_TRUE(FailingAllocation::hasFailed());
}

namespace
{
class CountedTask : public Task
{
public:
    CountedTask() { ++s_count; }
    ~CountedTask() override { --s_count; }
    void performAction() override { ++s_runs; }

    static inline int s_count = 0;
    static inline int s_runs = 0;
};

class MemoryExhaustionJobs : public JobsTest
{
protected:
    MemoryExhaustionJobs() { status.setUpdateInterval(std::numeric_limits<unsigned>::max()); }

    void runAll()
    {
        while (!jobs.isFinished())
        {
            Tasks::getSingleton()->onIdle();
            OtherTasks::getSingleton()->onIdle();
        }
        while (OtherTasks::getSingleton()->onIdle())
            ;
    }

    void forgetReports()
    {
        std::exchange(log->messages, {});
        std::exchange(sound->played, {});
        std::exchange(status.texts, {});
        std::exchange(status.updates, {});
    }
};
} // namespace

TEST_F(MemoryExhaustionJobs, AJobThatCannotBeQueuedEndsTheRestAndNoneIsLost)
{
    failEachAllocation(
        [this]
        {
            for (int i = 0; i < 3; ++i)
                jobs.add(std::make_unique<CountedTask>());
            return 0;
        },
        [this](int) { jobs.start(); },
        [this](int, bool threw)
        {
            EXPECT_EQ(jobs.isFinished(), threw);
            runAll();
            EXPECT_TRUE(jobs.isFinished());
            EXPECT_EQ(CountedTask::s_count, 0);
            EXPECT_EQ(std::exchange(CountedTask::s_runs, 0), threw ? 0 : 3);
            forgetReports();
        });
}

// Only up to the first equations: the library that solves them leaks without memory.
TEST_F(MemoryExhaustionJobs, AStudyWhoseCasesCannotBeMadeIsDroppedAndEnds)
{
    import("node,a,0,0,0\nnode,b,1,0,0\nbar,ab,a,b,1,1\nsupport,a,1,1,1\nsupport,b,0,1,1\nload,b,1,0,0\n");
    std::size_t tried = 0;
    const auto isSolving = [this] { return !status.texts.empty() && status.texts[0].rfind("Solving", 0) == 0; };
    for (;; ++tried)
    {
        forgetReports();
        const auto study = std::make_shared<truss::Study>("ab:1:2:3");
        truss::StudyTask task(document, study, truss::Analysis::Method::Iterative, false,
                              std::make_unique<truss::StudyReport>(study, file("s.csv"), file("s.svg")));
        {
            const FailingAllocation fault(tried + 1, Failing::Once);
            task.execute();
        }
        if (isSolving())
            break;
        while (task.repeat())
            task.execute();
        EXPECT_THAT(status.texts, testing::Not(testing::Contains(testing::StartsWith("Solving case 1"))));
        EXPECT_FALSE(directory.has("s.csv"));
    }
    EXPECT_GT(tried, 20u);
    FailingAllocation::s_failures.add(tried);
}
