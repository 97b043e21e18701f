// SPDX-License-Identifier: MIT
#include <truss/analysis/analysis.h>

#include <truss/support/trusstest.h>

#include <gmock/gmock.h>

namespace
{
using truss::Response;
using truss::Structure;
using Method = truss::Analysis::Method;

class Analysis : public TrussTest
{
protected:
    std::unique_ptr<Response> solve(Method method = Method::Direct)
    {
        truss::Analysis analysis(Structure(model()), method);
        while (analysis.step())
            ;
        return analysis.takeResponse();
    }

    std::string refusal(Method method)
    {
        try
        {
            solve(method);
        }
        catch (const Problem& problem)
        {
            return problem.getMessage().toUtf8();
        }
        return "none";
    }

    /// A bar along x, 2 long, that a unit force pulls.
    void importOneBar()
    {
        import("node,a,0,0,0\nnode,b,2,0,0\nbar,ab,a,b,4,8\nsupport,a,1,1,1\nsupport,b,0,1,1\nload,b,1,0,0\n");
    }

    /// A square of four bars without a diagonal, in a plane, held at two corners.
    void importSquare()
    {
        import("node,a,0,0,0\nnode,b,1,0,0\nnode,c,1,1,0\nnode,d,0,1,0\n"
               "bar,ab,a,b,1,1\nbar,bc,b,c,1,1\nbar,cd,c,d,1,1\nbar,da,d,a,1,1\n"
               "support,a,1,1,1\nsupport,b,1,1,1\nsupport,c,0,0,1\nsupport,d,0,0,1\n");
    }

    /// Its two upper corners move alike.
    const testing::Matcher<std::string> isMotionOfTheSquare = testing::AnyOf(
        "The truss is a mechanism: node 'c' moves freely", "The truss is a mechanism: node 'd' moves freely");

    /// A tall lattice of square bays, each with a diagonal: slender, but sound.
    void importTower(unsigned bays)
    {
        std::ostringstream csv;
        for (unsigned i = 0; i <= bays; ++i)
            csv << "node,l" << i << ",0," << i << ",0\nnode,r" << i << ",1," << i << ",0\n";
        for (unsigned i = 1; i <= bays; ++i)
            csv << "bar,v" << i << ",l" << i - 1 << ",l" << i << ",1,1e7\nbar,w" << i << ",r" << i - 1 << ",r" << i
                << ",1,1e7\nbar,h" << i << ",l" << i << ",r" << i << ",1,1e7\nbar,d" << i << ",l" << i - 1 << ",r" << i
                << ",1,1e7\n";
        for (unsigned i = 0; i <= bays; ++i)
        {
            const char* held = i == 0 ? ",1,1,1\n" : ",0,0,1\n";
            csv << "support,l" << i << held << "support,r" << i << held;
        }
        csv << "load,l" << bays << ",1,0,0\n";
        import(csv.str());
    }
};

TEST_F(Analysis, TenBarTrussHasThePublishedFigures)
{
    importData("tenbar.csv");
    const auto response = solve();
    EXPECT_NEAR(response->structure.getWeight(), 5060.9, 0.05);
    EXPECT_NEAR(response->displacements[0].y(), -2.00, 0.0001);
    EXPECT_NEAR(response->displacements[1].y(), -2.00, 0.01);
    EXPECT_EQ(response->findLargestDisplacement().joint, 0u);
    EXPECT_EQ(response->findLargestDisplacement().axis, 1u);
}

TEST_F(Analysis, OneBarStretchesByItsOwnLaw)
{
    importOneBar();
    const auto response = solve();
    EXPECT_DOUBLE_EQ(response->displacements[1].x(), 1.0 * 2 / (4 * 8)); // force times length over area and modulus
    EXPECT_DOUBLE_EQ(response->forces[0], 1);
    EXPECT_DOUBLE_EQ(response->stresses[0], 0.25);
    EXPECT_DOUBLE_EQ(response->reactions[0].x(), -1);
    EXPECT_EQ(response->reactions[1], Eigen::Vector3d::Zero());
}

TEST_F(Analysis, LoadsOnOneNodeAddUp)
{
    importOneBar();
    import("load,b,2,0,0\nload,b,-1,5,0\n");
    const auto response = solve();
    EXPECT_DOUBLE_EQ(response->forces[0], 2);
    EXPECT_DOUBLE_EQ(response->reactions[1].y(), -5); // straight into the support
}

TEST_F(Analysis, ReactionsBalanceTheLoads)
{
    importData("tenbar.csv");
    import("load,n1,1000,-2000,3000\n");
    const auto response = solve();
    Eigen::Vector3d sum = Eigen::Vector3d::Zero();
    for (std::size_t i = 0; i < response->reactions.size(); ++i)
        sum += response->reactions[i] + response->structure.getJoints()[i].force;
    EXPECT_LT(sum.norm(), 1e-9 * 200000);
}

TEST_F(Analysis, IterationAgreesWithFactorization)
{
    importData("tenbar.csv");
    const auto exact = solve();
    const auto approached = solve(Method::Iterative);
    for (std::size_t i = 0; i < exact->displacements.size(); ++i)
        EXPECT_LT((exact->displacements[i] - approached->displacements[i]).norm(), 1e-8);
}

TEST_F(Analysis, AStructureThatIsHeldEverywhereDoesNotMove)
{
    import("node,a,0,0,0\nnode,b,1,0,0\nbar,ab,a,b,1,1\nsupport,a,1,1,1\nsupport,b,1,1,1\nload,b,7,0,0\n");
    const auto response = solve();
    EXPECT_EQ(response->displacements[1], Eigen::Vector3d::Zero());
    EXPECT_EQ(response->reactions[1].x(), -7);
    EXPECT_EQ(response->findLargestDisplacement().value, 0);
}

TEST_F(Analysis, ASlenderTowerIsNoMechanism)
{
    importTower(400);
    const auto response = solve();
    EXPECT_GT(response->findLargestDisplacement().value, 1);
}

TEST_F(Analysis, AnUnloadedMechanismIsRefused)
{
    importSquare();
    EXPECT_THAT(refusal(Method::Direct), isMotionOfTheSquare);
}

TEST_F(Analysis, AMechanismIsRefusedByIterationWhenTheLoadsSetItMoving)
{
    importSquare();
    import("load,c,1,0,0\n");
    EXPECT_THAT(refusal(Method::Iterative), isMotionOfTheSquare);
}

TEST_F(Analysis, ADiagonalMakesTheSquareSound)
{
    importSquare();
    import("bar,ac,a,c,1,1\nload,c,1,0,0\n");
    EXPECT_GT(solve()->displacements[2].x(), 0);
}

TEST_F(Analysis, AMechanismNamesANodeThatMoves)
{
    // The tower is sound; the pendulum that hangs from its top is not.
    importTower(3);
    import("node,p,0.5,7,0\nbar,p3,p,l3,1,1e7\nsupport,p,0,0,1\n");
    EXPECT_PROBLEM(solve(), "The truss is a mechanism: node 'p' moves freely");
}

TEST_F(Analysis, ANodeThatNoBarHoldsMovesFreely)
{
    importOneBar();
    import("node,lost,5,5,5\n");
    EXPECT_PROBLEM(solve(), "The truss is a mechanism: node 'lost' moves freely");
}

TEST_F(Analysis, APlaneTrussThatIsNotHeldInItsPlaneMovesOutOfIt)
{
    import("node,a,0,0,0\nnode,b,2,0,0\nnode,c,1,1,0\nbar,ac,a,c,1,1\nbar,bc,b,c,1,1\n"
           "support,a,1,1,1\nsupport,b,1,1,1\nload,c,0,-1,0\n");
    EXPECT_PROBLEM(solve(), "The truss is a mechanism: node 'c' moves freely");
}

TEST_F(Analysis, NodesThatAreInLineButForRoundingAreAMechanism)
{
    import("node,a,0,0,0\nnode,b,1,0.30000000000000004,0\nnode,c,2,0.6,0\nbar,ab,a,b,1,1\nbar,bc,b,c,1,1\n"
           "support,a,1,1,1\nsupport,b,0,0,1\nsupport,c,1,1,1\nload,b,0,-1,0\n");
    EXPECT_PROBLEM(solve(), "The truss is a mechanism: node 'b' moves freely");
}

TEST_F(Analysis, WithoutBarsThereIsNothingToSolve)
{
    import("node,a,0,0,0\nsupport,a,1,1,1\n");
    EXPECT_PROBLEM(solve(), "There is no bar to solve for");
}

TEST_F(Analysis, NumbersThatOverflowAreRefused)
{
    import("node,a,0,0,0\nnode,b,1e-300,0,0\nbar,ab,a,b,1e300,1e300\nsupport,a,1,1,1\nsupport,b,0,1,1\nload,b,1,0,0\n");
    EXPECT_THROW(solve(), Problem);
}

TEST_F(Analysis, ProgressRunsFromNothingTowardsAllAndNeverBack)
{
    importTower(2000); // more bars than one step assembles
    truss::Analysis analysis(Structure(model()), Method::Direct);
    int last = analysis.getPercent();
    EXPECT_EQ(last, 0);
    unsigned steps = 0;
    while (analysis.step())
    {
        EXPECT_GE(analysis.getPercent(), last);
        last = analysis.getPercent();
        ++steps;
    }
    EXPECT_EQ(last, 90);
    EXPECT_GE(steps, 2u);
}

TEST_F(Analysis, AResultIsDroppedWithTheFirstEdit)
{
    importOneBar();
    document.setResponse(solve());
    ASSERT_NE(document.getResponse(), nullptr);
    edit("area ab 2");
    EXPECT_EQ(document.getResponse(), nullptr);
    EXPECT_PROBLEM(document.requireResponse(), "The truss has not been solved");
    document.setResponse(solve());
    document.undo();
    EXPECT_EQ(document.getResponse(), nullptr);
    document.setResponse(solve());
    edit("add node z 1 2 3");
    EXPECT_EQ(document.getResponse(), nullptr);
}
} // namespace
