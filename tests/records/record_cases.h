#pragma once

// What the tests of stored records share: tables of documents and what reading them must give.

#include "base/json.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velarc {

// A document that a decoder must refuse, and the defect in words.
struct RefusedDocument
{
    const char *defect;
    const char *json;
};

template <typename Decode>
void expectRefused(Decode decode, const std::vector<RefusedDocument> &documents)
{
    for (const RefusedDocument &document : documents) {
        SCOPED_TRACE(std::string(document.defect) + ": " + document.json);
        EXPECT_THROW((void)decode(parseJson(document.json)), JsonError);
    }
}

// A document and the record that it must be read as.
template <typename Record> struct ReadDocument
{
    const char *feature;
    const char *json;
    Record record;
};

template <typename Record, typename Decode>
void expectRead(Decode decode, const std::vector<ReadDocument<Record>> &documents)
{
    for (const auto &document : documents) {
        SCOPED_TRACE(std::string(document.feature) + ": " + document.json);
        EXPECT_NO_THROW(EXPECT_TRUE(decode(parseJson(document.json)) == document.record));
    }
}

} // namespace velarc
