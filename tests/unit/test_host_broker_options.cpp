#include "broker_options.h"
#include "projectfile.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace plchost {
namespace {

using testing::HasSubstr;

plclink::MqttAccess Parse(std::vector<std::string> words)
{
    CLI::App app;
    plclink::MqttAccess access;
    AddBrokerOptions(app, access);
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    return access;
}

TEST(BrokerOptions, AreNoneUnlessTheyAreGiven)
{
    const plclink::MqttAccess access = Parse({});

    EXPECT_EQ(access.authorities, "");
    EXPECT_EQ(access.passwordFile, "");
    EXPECT_FALSE(access.mayBeOpen);
    EXPECT_EQ(BrokerOptionsError(access), "");
}

TEST(BrokerOptions, SayHowABrokerIsTrustedAndKnowsUs)
{
    const std::string file = ProjectFile("README.md");
    const std::string other = ProjectFile("CHANGELOG.md");
    const plclink::MqttAccess access =
        Parse({"--ca", file, "--password-file", other, "--insecure"});

    EXPECT_EQ(access.authorities, file);
    EXPECT_EQ(access.passwordFile, other);
    EXPECT_TRUE(access.mayBeOpen);
}

TEST(BrokerOptions, NameFilesThatAreThere)
{
    EXPECT_THROW(Parse({"--ca", "/nowhere/ca.crt"}), CLI::ValidationError);
    EXPECT_THROW(Parse({"--password-file", "/nowhere/password"}), CLI::ValidationError);
}

TEST(BrokerOptions, AreRefusedWhereNothingGoesOverABroker)
{
    EXPECT_THAT(BrokerOptionsError({"a", "", false}), HasSubstr("--ca is of use"));
    EXPECT_THAT(BrokerOptionsError({"", "a", false}), HasSubstr("--password-file is of use"));
    EXPECT_THAT(BrokerOptionsError({"", "", true}), HasSubstr("--insecure is of use"));
}

} // namespace
} // namespace plchost
