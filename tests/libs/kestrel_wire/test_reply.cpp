#include "libs/kestrel_wire/reply.h"

#include <gtest/gtest.h>
#include <string>

using kestrel_wire::ErrorNumber;
using kestrel_wire::parseReply;
using kestrel_wire::Reply;

namespace {

struct ValueRow {
    const char* line;
    const char* parameter;
    const char* value;
};

struct MalformedRow {
    std::string line;
    const char* parameter;
};

class Value : public testing::TestWithParam<ValueRow> {};
class MalformedReply : public testing::TestWithParam<MalformedRow> {};

} // namespace

TEST_P(Value, isWhatStandsBehindTheParameter) {
    const Reply reply = parseReply(GetParam().line, GetParam().parameter);
    EXPECT_EQ(reply.kind, Reply::Kind::Value);
    EXPECT_EQ(reply.value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Reply, Value,
    testing::Values(ValueRow{"kestrel2 set status active none", "status active", "none"},
                    ValueRow{"kestrel2 set cal step_pause measurementtool s01 yes 5",
                             "cal step_pause measurementtool s01", "yes 5"},
                    ValueRow{"kestrel2 set cal type_desc measurementtool \"Tool tip\"",
                             "cal type_desc measurementtool", "\"Tool tip\""},
                    ValueRow{"kestrel2 set measurementtool device b1 zelwpan V M 123",
                             "measurementtool device b01", "zelwpan V M 123"},
                    ValueRow{"kestrel2 set  measurementtool   device b001   none",
                             "measurementtool device b01", "none"},
                    ValueRow{"kestrel2 set zelwpan device_model_desc V M0 \"x\"",
                             "zelwpan device_model_desc V M0", "\"x\""},
                    ValueRow{"kestrel2 set zelwpan device_model_desc V 00 \"x\"",
                             "zelwpan device_model_desc V 00", "\"x\""},
                    ValueRow{"kestrel2 set a b10 c", "a b10", "c"},
                    ValueRow{"kestrel2 set version model ", "version model", ""},
                    ValueRow{"kestrel2 set version model", "version model", ""},
                    ValueRow{"kestrel2 set version model two words ", "version model",
                             "two words "}));

TEST_P(MalformedReply, isNoAnswer) {
    EXPECT_EQ(parseReply(GetParam().line, GetParam().parameter).kind, Reply::Kind::Malformed);
}

INSTANTIATE_TEST_SUITE_P(
    Reply, MalformedReply,
    testing::Values(MalformedRow{"", "status active"}, MalformedRow{"", ""},
                    MalformedRow{"kestrel2 ok", "status active"},
                    MalformedRow{"kestrel2 set status progress 0.5", "status active"},
                    MalformedRow{"kestrel2 set status activex 0.5", "status active"},
                    MalformedRow{"kestrel2 set a b012 none", "a b01"},
                    MalformedRow{"kestrel2 set a b011 none", "a b01"},
                    MalformedRow{"kestrel2 set a b02 none", "a b01"},
                    MalformedRow{"kestrel2 set status act", "status active"},
                    MalformedRow{"kestrel2 se", "status active"},
                    MalformedRow{"kestrel2 set", "status active"},
                    MalformedRow{"status active none", "status active"},
                    MalformedRow{std::string("kestrel2 set status active \0", 28), "status active"},
                    MalformedRow{"kestrel2 ok ", ""}, MalformedRow{"kestrel2 o", ""},
                    MalformedRow{"kestrel2 okay", ""}, MalformedRow{"kestrel2 set a b", ""},
                    MalformedRow{"kestrel2 err", ""}, MalformedRow{"kestrel2 err x \"a\"", ""},
                    MalformedRow{"kestrel2 err 0 \"a\"", ""},
                    MalformedRow{"kestrel2 err -1 \"a\"", ""}, MalformedRow{"kestrel2 err 3 a", ""},
                    MalformedRow{"kestrel2 err 3 \"", ""}, MalformedRow{"kestrel2 err 3 \"a", ""},
                    MalformedRow{"kestrel2 err 3", ""},
                    MalformedRow{"kestrel2 err 99999999999 \"a\"", ""}));

TEST(Reply, okIsTheExactText) {
    EXPECT_EQ(parseReply("kestrel2 ok", "").kind, Reply::Kind::Ok);
}

TEST(Reply, anErrorCarriesNumberAndTextWhateverWasAsked) {
    for (const char* parameter : {"", "status active"}) {
        const Reply reply = parseReply("kestrel2 err 4 \"not a number\"", parameter);
        EXPECT_EQ(reply.kind, Reply::Kind::Error);
        EXPECT_EQ(reply.errorNumber, 4);
        EXPECT_EQ(reply.errorText, "not a number");
    }
}

TEST(Reply, anErrorTextMayBeEmpty) {
    const Reply reply = parseReply("kestrel2 err 11 \"\"", "");
    EXPECT_EQ(reply.kind, Reply::Kind::Error);
    EXPECT_EQ(reply.errorText, "");
}

TEST(Reply, buildersWriteTheForms) {
    EXPECT_EQ(kestrel_wire::valueReply("cal step_pause measurementtool s01", "yes 5"),
              "kestrel2 set cal step_pause measurementtool s01 yes 5");
    EXPECT_EQ(kestrel_wire::errorReply(ErrorNumber::BadValue, "out of range"),
              "kestrel2 err 4 \"out of range\"");
    EXPECT_EQ(kestrel_wire::okReply, "kestrel2 ok");
}

TEST(Reply, anErrorTextWithQuotesAndLineEndsStaysOneQuotedLine) {
    const std::string line = kestrel_wire::errorReply(ErrorNumber::Unknown, "no \"x\"\nhere");
    EXPECT_EQ(line, "kestrel2 err 3 \"no 'x' here\"");
    EXPECT_EQ(parseReply(line, "").errorText, "no 'x' here");
}
