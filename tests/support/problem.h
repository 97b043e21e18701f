// SPDX-License-Identifier: MIT
// Expectations about failures: the whole message is compared.
#pragma once

#include <kel/problem.h>

#include <gtest/gtest.h>

#include <regex>
#include <string>

/// Expects the statement to throw a Problem whose whole message is `text`.
#define EXPECT_PROBLEM(statement, text)                                                                                \
    try                                                                                                                \
    {                                                                                                                  \
        statement;                                                                                                     \
        ADD_FAILURE() << "no Problem from: " #statement;                                                               \
    }                                                                                                                  \
    catch (const Problem& caught)                                                                                      \
    {                                                                                                                  \
        EXPECT_EQ(caught.getMessage().toUtf8(), text);                                                                 \
    }

/// Expects the statement to fail an assertion with the given expression text; file and line may be any.
#define EXPECT_ASSERTION(statement, expression)                                                                        \
    try                                                                                                                \
    {                                                                                                                  \
        statement;                                                                                                     \
        ADD_FAILURE() << "no assertion from: " #statement;                                                             \
    }                                                                                                                  \
    catch (const Problem& caught)                                                                                      \
    {                                                                                                                  \
        const std::string message = caught.getMessage().toUtf8();                                                      \
        const std::string head = std::string("Assertion Failed.\nExpression: ") + (expression) + "\nFile: ";           \
        EXPECT_EQ(message.substr(0, head.size()), head);                                                               \
        EXPECT_TRUE(std::regex_search(message, std::regex("\nFile: src/kel/[a-z_]+\\.(h|cpp)\nLine: [0-9]+$")))        \
            << message;                                                                                                \
    }
