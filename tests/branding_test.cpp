// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/branding.h>

#include "support/installed.h"
#include "support/testplatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace
{
struct BrandingTest : testing::Test
{
    // Each case leaves the values of the process as it found them; credits cannot be taken back.
    ~BrandingTest() override
    {
        branding.set("Pellwick", "Morvane", "morvane", "tal", "www.pellwick.example", "%1@pellwick.example",
                     "MorvaneInstallMutex", "MORVANE_DIR", "dorvex");
    }

    void rename() const
    {
        branding.set("Acorn", "Bridge", "bridge", "acn", "acorn.example", "%1@mail.acorn.example", "BridgeMutex",
                     "BRIDGE_DIR", "acorns");
    }

    Branding& branding = *Branding::getSingleton();
};
} // namespace

TEST_F(BrandingTest, HasItsDefaults)
{
    EXPECT_EQ(branding.getCompany(), "Pellwick");
    EXPECT_EQ(branding.getProduct(), "Morvane");
    EXPECT_EQ(branding.getProductLower(), "morvane");
    EXPECT_EQ(branding.getShortCompany(), "tal");
    EXPECT_EQ(branding.getWebHost(), "www.pellwick.example");
    EXPECT_EQ(branding.getEmailPattern(), "%1@pellwick.example");
    EXPECT_EQ(branding.getInstallMutex(), "MorvaneInstallMutex");
    EXPECT_EQ(branding.getInstallDirVariable(), "MORVANE_DIR");
    EXPECT_EQ(branding.getTag(), "dorvex");
}

TEST_F(BrandingTest, ProductSetsItsOwnValues)
{
    rename();
    EXPECT_EQ(branding.getCompany(), "Acorn");
    EXPECT_EQ(branding.getProduct(), "Bridge");
    EXPECT_EQ(branding.getProductLower(), "bridge");
    EXPECT_EQ(branding.getShortCompany(), "acn");
    EXPECT_EQ(branding.getWebHost(), "acorn.example");
    EXPECT_EQ(branding.getEmailPattern(), "%1@mail.acorn.example");
    EXPECT_EQ(branding.getInstallMutex(), "BridgeMutex");
    EXPECT_EQ(branding.getInstallDirVariable(), "BRIDGE_DIR");
    EXPECT_EQ(branding.getTag(), "acorns");
}

TEST_F(BrandingTest, ValuesMayBeSetFromEachOther)
{
    branding.set(branding.getProduct(), branding.getCompany(), branding.getShortCompany(), branding.getProductLower(),
                 branding.getTag(), branding.getWebHost(), branding.getInstallDirVariable(), branding.getInstallMutex(),
                 branding.getEmailPattern());
    EXPECT_EQ(branding.getCompany(), "Morvane");
    EXPECT_EQ(branding.getProduct(), "Pellwick");
    EXPECT_EQ(branding.getProductLower(), "tal");
    EXPECT_EQ(branding.getShortCompany(), "morvane");
    EXPECT_EQ(branding.getWebHost(), "dorvex");
    EXPECT_EQ(branding.getEmailPattern(), "www.pellwick.example");
    EXPECT_EQ(branding.getInstallMutex(), "MORVANE_DIR");
    EXPECT_EQ(branding.getInstallDirVariable(), "MorvaneInstallMutex");
    EXPECT_EQ(branding.getTag(), "%1@pellwick.example");
}

TEST_F(BrandingTest, WebHostSetToItselfStays)
{
    EXPECT_EQ(branding.setUrl(branding.getWebHost()), "www.pellwick.example");
    EXPECT_EQ(branding.getWebHost(), "www.pellwick.example");
}

TEST_F(BrandingTest, ThereIsOneSetOfValues)
{
    EXPECT_EQ(Branding::getSingleton(), &branding);
}

TEST_F(BrandingTest, OtherValuesStartWithTheDefaults)
{
    rename();
    Branding other;
    EXPECT_EQ(other.getCompany(), "Pellwick");
    EXPECT_EQ(other.createUrl("a"), "http://www.pellwick.example/a");
    other.addPoweredBy("A");
    EXPECT_EQ(other.getPoweredBy().size(), 1u);
}

TEST_F(BrandingTest, PageIsTakenAsGiven)
{
    EXPECT_EQ(branding.createUrl(""), "http://www.pellwick.example/");
    EXPECT_EQ(branding.createUrl("support"), "http://www.pellwick.example/support");
    EXPECT_EQ(branding.createUrl("/a b"), "http://www.pellwick.example//a b");
}

TEST_F(BrandingTest, LinksCanPointAtAnotherServerForAWhile)
{
    const std::string before = branding.setUrl("test.example");
    EXPECT_EQ(before, "www.pellwick.example");
    EXPECT_EQ(branding.createUrl("a"), "http://test.example/a");
    EXPECT_EQ(branding.setUrl(before), "test.example");
    EXPECT_EQ(branding.createUrl("a"), "http://www.pellwick.example/a");
}

TEST_F(BrandingTest, HelpAddressNamesProductSystemAndRelease)
{
    const Installed<TestPlatform> platform;
    EXPECT_EQ(branding.createEmbeddedUrl("index"), "http://www.pellwick.example/files/morvane/linux/r7/index.html");
}

TEST_F(BrandingTest, DownloadAddressNamesTagAndSystem)
{
    const Installed<TestPlatform> platform;
    EXPECT_EQ(branding.createOsUrl("setup"), "http://www.pellwick.example/dorvex/linux/setup");
    EXPECT_EQ(branding.createOsBitUrl("setup"), "http://www.pellwick.example/dorvex/linux64/setup");
}

TEST_F(BrandingTest, AddressesAreMadeFromTheValuesSet)
{
    rename();
    const Installed<TestPlatform> platform;
    platform->osName = "mac";
    platform->releaseName = "beta";
    EXPECT_EQ(branding.createEmbeddedUrl("index"), "http://acorn.example/files/bridge/mac/beta/index.html");
    EXPECT_EQ(branding.createOsUrl("setup"), "http://acorn.example/acorns/mac/setup");
    EXPECT_EQ(branding.createEmail("support"), "support@mail.acorn.example");
}

TEST_F(BrandingTest, UserIsPutIntoTheMailPattern)
{
    EXPECT_EQ(branding.createEmail("support"), "support@pellwick.example");
}

TEST_F(BrandingTest, CreditTellsWhatMadeAFileAndWhen)
{
    Ztring text("x");
    branding.appendCredit(text);
    const std::regex credit("xGenerated by Pellwick's Morvane on: "
                            "[0-9]{2} [A-Z][a-z]{2} [0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2}, www\\.pellwick\\.example");
    EXPECT_TRUE(std::regex_match(text.toUtf8(), credit)) << text;
}

TEST_F(BrandingTest, CreditsAreListedInOrderAndKeptByNewValues)
{
    Ztring none("x");
    branding.appendPoweredByTo(none);
    EXPECT_EQ(none, "x");
    EXPECT_TRUE(branding.getPoweredBy().empty());
    branding.addPoweredBy("A");
    branding.addPoweredBy("B");
    Ztring text("x\n");
    branding.appendPoweredByTo(text);
    EXPECT_EQ(text, "x\n  A\n  B\n");
    EXPECT_EQ(branding.getPoweredBy().size(), 2u);
    rename();
    EXPECT_EQ(branding.getPoweredBy().size(), 2u);
}
