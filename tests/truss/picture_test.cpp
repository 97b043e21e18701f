// SPDX-License-Identifier: MIT
#include <truss/picture/axis.h>
#include <truss/picture/curveplot.h>
#include <truss/picture/projection.h>
#include <truss/picture/roundnumber.h>
#include <truss/picture/trusspicture.h>

#include <truss/analysis/analysis.h>
#include <truss/support/trusstest.h>

#include <gmock/gmock.h>

#include <regex>

#include <cmath>

namespace
{
using testing::ElementsAre;
using testing::HasSubstr;
using truss::Axis;
using truss::RoundNumber;
using truss::Structure;

class Picture : public TrussTest
{
protected:
    std::string draw(const truss::Response* response = nullptr)
    {
        std::ostringstream out;
        const Structure structure(model());
        truss::TrussPicture picture(out, structure, response);
        while (picture.draw(3))
            ;
        return out.str();
    }

    std::unique_ptr<truss::Response> solve()
    {
        truss::Analysis analysis(Structure(model()), truss::Analysis::Method::Direct);
        while (analysis.step())
            ;
        return analysis.takeResponse();
    }
};

TEST(RoundNumber, IsOneTwoOrFiveTimesAPowerOfTen)
{
    EXPECT_DOUBLE_EQ(RoundNumber::below(19.9), 10);
    EXPECT_DOUBLE_EQ(RoundNumber::below(20), 20);
    EXPECT_DOUBLE_EQ(RoundNumber::below(0.07), 0.05);
    EXPECT_DOUBLE_EQ(RoundNumber::above(20), 20);
    EXPECT_DOUBLE_EQ(RoundNumber::above(21), 50);
    EXPECT_DOUBLE_EQ(RoundNumber::above(0.07), 0.1);
}

TEST(Axis, ReachesFromOneRoundMarkToAnother)
{
    const Axis axis(0.3, 9.7, 100, 200);
    EXPECT_THAT(axis.getMarks(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
    EXPECT_DOUBLE_EQ(axis.toPage(0), 100);
    EXPECT_DOUBLE_EQ(axis.toPage(10), 200);
}

TEST(Axis, TakesEqualValues)
{
    for (const double value : {0.0, 5.0, -3.0})
    {
        const Axis axis(value, value, 100, 200);
        EXPECT_GE(axis.getMarks().size(), 2u) << value;
        EXPECT_TRUE(std::isfinite(axis.toPage(value))) << value;
    }
}

TEST_F(Picture, APlaneTrussIsSeenAtRightAngles)
{
    import("node,a,0,5,0\nnode,b,30,5,40\n");
    const truss::Projection projection(Structure(model()), 400, 50);
    EXPECT_TRUE(projection.isPlane());
    EXPECT_EQ(projection.getPageWidth(), 400);
    EXPECT_EQ(projection.getPageHeight(), 500);
    const auto lower = projection({0, 5, 0});
    EXPECT_EQ(lower.x, 50);
    EXPECT_EQ(lower.y, 450);
    const auto upper = projection({30, 5, 40});
    EXPECT_EQ(upper.x, 350);
    EXPECT_EQ(upper.y, 50);
}

TEST_F(Picture, ASpaceTrussHasZUpwards)
{
    import("node,a,0,0,0\nnode,b,1,1,0\nnode,c,0,0,1\n");
    const truss::Projection projection(Structure(model()), 400, 50);
    EXPECT_FALSE(projection.isPlane());
    EXPECT_EQ(projection({0, 0, 0}).x, projection({0, 0, 1}).x);
    EXPECT_GT(projection({0, 0, 0}).y, projection({0, 0, 1}).y);
}

TEST_F(Picture, NothingIsDrawnWithoutHarm)
{
    EXPECT_THAT(draw(), HasSubstr("</svg>"));
    import("node,a,1,2,3\n");
    EXPECT_THAT(draw(), HasSubstr("</svg>"));
}

TEST_F(Picture, TensionAndCompressionHaveTheirColours)
{
    import("node,a,0,0,0\nnode,b,2,0,0\nnode,c,4,0,0\nbar,ab,a,b,4,8\nbar,bc,b,c,4,8\n"
           "support,a,1,1,1\nsupport,b,0,1,1\nsupport,c,1,1,1\nload,b,1,0,0\n");
    const std::string svg = draw(solve().get());
    EXPECT_THAT(svg, testing::ContainsRegex("rgb\\(10[.0-9]*%,[ ]*30[.0-9]*%,[ ]*80"));
    EXPECT_THAT(svg, testing::ContainsRegex("rgb\\(80[.0-9]*%,[ ]*15[.0-9]*%,[ ]*10"));
}

TEST_F(Picture, ACurveIsDrawnThroughItsPoints)
{
    std::ostringstream out;
    truss::CurvePlot("x", "y").draw(out, {{1, 2}, {2, 4}, {3, 1}});
    std::vector<double> places; // x and y of the ends of each piece
    const std::string number = " ([0-9.]+)";
    const std::regex piece("stroke-width:1.5;[^>]*d=\"M" + number + number + " L" + number + number + " \"/>");
    const std::string svg = out.str();
    for (std::sregex_iterator at(svg.begin(), svg.end(), piece); at != std::sregex_iterator(); ++at)
    {
        for (std::size_t i = 1; i <= 4; ++i)
            places.push_back(std::stod((*at)[i]));
    }
    ASSERT_EQ(places.size(), 8u) << svg;
    EXPECT_EQ(places[2], places[4]); // one goes on where the other ends
    EXPECT_EQ(places[3], places[5]);
    EXPECT_NEAR(places[2] - places[0], places[6] - places[4], 0.01);         // 1 to 2 is as far as 2 to 3
    EXPECT_NEAR(1.5 * (places[1] - places[3]), places[7] - places[5], 0.01); // 2 up, 3 down
    EXPECT_GT(places[1], places[3]);                                         // SVG counts downwards
}

TEST_F(Picture, AStreamThatFailsIsAProblem)
{
    std::ostringstream out;
    out.setstate(std::ios_base::badbit);
    EXPECT_THROW(truss::CurvePlot("x", "y").draw(out, {{1, 2}}), Problem);
}
} // namespace
