#include "converter/LogosReader.h"
#include "converter/LogosSource.h"
#include "converter/MethodSignature.h"
#include "converter/NotUnderstood.h"
#include "converter/PlainText.h"
#include "converter/ValueExpression.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

PropertyListValue text(const char* words) {
  return {std::string(words)};
}
PropertyListValue whole(std::int64_t number) {
  return {number};
}

std::string declared(const char* signature) {
  try {
    return methodSignature(signature).declaration();
  } catch (const NotUnderstood& reason) {
    return reason.what();
  }
}

TEST(Signatures, AreDeclaredAnewOrNotUnderstood) {
  const std::string no = "the method is not understood";
  const struct {
    const char* signature;
    std::string declaration;
  } rows[] = {
      {"- (BOOL)isPremium", "- (BOOL)isPremium"},
      {"  -(BOOL) isPremium ; ", "- (BOOL)isPremium"},
      {"- isPremium", "- (id)isPremium"},
      {"+ (id)itemWithName:(NSString *)name count:(int)count",
       "+ (id)itemWithName:(NSString *)arg1 count:(int)arg2"},
      {"- (void)set:(in NSArray<NSString*>*_Nullable)in for:class",
       "- (void)set:(NSArray *)arg1 for:(id)arg2"},
      {"- (instancetype)new:(void (^)(BOOL, id))block", "- (id)new:(id)arg1"},
      {"- (void)a:(int) b:(BOOL)", "- (void)a:(int)arg1 b:(BOOL)arg2"},
      {"+ (id)curve:(float)x :(float)y", "+ (id)curve:(float)arg1 :(float)arg2"},
      {"+ (id)curve:(float)x:(float)y", "+ (id)curve:(float)arg1 :(float)arg2"},
      {"+ (id)curve:(float):(float)", "+ (id)curve:(float)arg1 :(float)arg2"},
      {"- (OSStatus)put:(FILE *)f", "- (OSStatus)put:(FILE *)arg1"},
      {"- (unsigned long  long)a:(const char*)b c:(struct _x*)d e:(NSError**)f",
       "- (unsigned long long)a:(const char *)arg1 c:(struct _x *)arg2 e:(NSError **)arg3"},
      {"- (struct CGRect)frame:(id<Reader, Writer>)x", "- (CGRect)frame:(id)arg1"},
      {"- (PriceKind)kind", "the type PriceKind is not understood"},
      {"- (struct Own)own", "the type struct Own is not understood"},
      {"- (long double)x", "the type long double is not understood"},
      {"- (short long)x", "the type short long is not understood"},
      {"- (int (*)(int))x", "the type int (*)(int) is not understood"},
      {"- (id<Open)x", "the type id<Open is not understood"},
      {"- (struct *)x", "the type struct * is not understood"},
      {"- (struct int *)x", "the type struct int * is not understood"},
      {"- (NSZone)zone", "the type NSZone is not understood"},
      {"- (NULL *)x", "the type NULL * is not understood"},
      {"- (CGImageRef)image:(CFStringRef)s", "- (CGImageRef)image:(CFStringRef)arg1"},
      {"- (CGMadeUpRef)x", "the type CGMadeUpRef is not understood"},
      {"- (CGThing *)x", "the type CGThing * is not understood"},
      {"- ()x", "the type  is not understood"},
      {"", no},
      {"(void)x", no},
      {"- (void)", no},
      {"- (void)x {", no},
      {"- (void)x\n%end", no},
      {"- (void)x:(void)y", no},
      {"- (void)x:(int)a, ...", no},
      {"- (void)x:(int)a y:(int)b z", no},
      {"- (void)2x", no},
      {"- (void", no},
  };
  for (const auto& row : rows) EXPECT_EQ(declared(row.signature), row.declaration) << row.signature;
}

TEST(Values, FitTheirTypesOrAreRefused) {
  const std::string no = "refused";
  const PropertyListValue large{UINT64_MAX};
  const struct {
    const char* type;
    PropertyListValue value;
    std::string expression;
  } rows[] = {
      {"BOOL", {true}, "YES"},
      {"bool", text("NO"), "NO"},
      {"BOOL", whole(1), "YES"},
      {"BOOL", whole(2), no},
      {"BOOL", text("maybe"), no},
      {"int", whole(-2147483648), "-2147483648"},
      {"int", whole(2147483648), no},
      {"int", {true}, "1"},
      {"int", {1.5}, no},
      {"unsigned char", whole(255), "255"},
      {"unsigned char", whole(256), no},
      {"NSUInteger", whole(-1), no},
      {"NSUInteger", text("18446744073709551615"), "18446744073709551615ULL"},
      {"NSUInteger", text("18446744073709551616"), no},
      {"NSUInteger", large, "18446744073709551615ULL"},
      {"NSInteger", large, no},
      {"int", large, no},
      {"NSNumber *", large, "@(18446744073709551615ULL)"},
      {"double", large, "18446744073709551616.0"},
      {"NSInteger", text("-0x10"), "-16"},
      {"long", text("-9223372036854775808"), "(-9223372036854775807LL - 1)"},
      {"long", text("-9223372036854775809"), no},
      {"long", text("1); system(\"x\""), no},
      {"double", {0.1}, "0.1"},
      {"CGFloat", whole(3), "3.0"},
      {"double", text("1e300"), "1e+300"},
      {"float", text("1e300"), no},
      {"double", text("nan"), no},
      {"double", text("1.5 "), no},
      {"NSString *", text("words"), "@\"words\""},
      {"NSString *", text("(null)"), "nil"},
      {"NSString *", whole(5), no},
      {"NSString *", {std::string("a\0b", 3)}, no},
      {"NSMutableString *", text("m"), "[NSMutableString stringWithString:@\"m\"]"},
      {"id", text("words"), "@\"words\""},
      {"id", {true}, "@YES"},
      {"NSNumber *", text("-5"), "@(-5)"},
      {"NSNumber *", text("1.5"), "@(1.5)"},
      {"NSNumber *", text("NO"), "@NO"},
      {"NSNumber *", text("many"), no},
      {"Person *", text("nil"), "nil"},
      {"Person *", text("words"), no},
      {"void (^)(int)", text("null"), "nil"},
      {"const char *", text("NULL"), "NULL"},
      {"const char *", text("words"), no},
      {"CGRect", text("nil"), no},
      {"int", text("nil"), no},
      {"id", {PropertyListValue::Array{}}, no},
  };
  for (const auto& row : rows) {
    std::string expression = no;
    try {
      expression = valueExpression(row.value, valueType(row.type));
    } catch (const NotUnderstood&) {
    }
    EXPECT_EQ(expression, row.expression) << row.type;
  }
}

// A class is declared before it is named; what a header declares otherwise must not be declared as one.
TEST(Signatures, DeclareTheClassesThatTheyNameAndNothingElse) {
  const struct {
    const char* type;
    const char* written;
    const char* forwardClass;
  } rows[] = {
      {"Person *", "Person *", "Person"},
      {"Protocol *", "Protocol *", "Protocol"},
      {"Person **", "Person **", "Person"},
      {"NSZone *", "NSZone *", ""},
      {"NSMapEnumerator *", "NSMapEnumerator *", ""},
      {"UIEdgeInsets *", "UIEdgeInsets *", ""},
      {"CGContextRef *", "CGContextRef *", ""},
      {"AudioBufferList *", "struct AudioBufferList *", ""},
      {"const AudioStreamBasicDescription *", "const struct AudioStreamBasicDescription *", ""},
  };
  for (const auto& row : rows) {
    const ValueType type = valueType(row.type);
    EXPECT_EQ(type.written, row.written);
    EXPECT_EQ(type.forwardClass, row.forwardClass) << row.type;
  }
  EXPECT_EQ(valueType("NSZone *").kind, ValueKind::Pointer);
  EXPECT_EQ(valueType("AudioBufferList *").kind, ValueKind::Pointer);
}

TEST(Literals, MeanTheirTextAndNeverEndEarly) {
  const std::string hostile = "\"];\n%end\\\" \?\?/ \xE2\x80\xAE \x01 مرحبا";
  const std::string literal = stringLiteral(hostile);
  EXPECT_EQ(literal, "@\"\\042];\\012\\045end\\134\\042 \\077\\077/ \\342\\200\\256 \\001 مرحبا\"");
  EXPECT_EQ(commentText("a\n%end \\\?\?/ \xE2\x80\xA8 b\r\"*/"), "a end b *");
}

std::optional<std::vector<FlexPatch>> sample() {
  return flexPatches(fileAt(TWEAKBENCH_FLEX_SAMPLE));
}

TEST(Source, HooksEachClassOnceWithItsMethods) {
  const auto patches = sample();
  ASSERT_TRUE(patches);
  ASSERT_EQ(patches->size(), 3U);
  const LogosSource source = logosSource(patches->front());
  EXPECT_EQ(source.hooked, 4U);
  EXPECT_EQ(source.skipped, 1U);
  const ReadSource read = LogosReader::read(source.text);
  const std::map<std::string, std::map<std::string, std::string>> expected{
      {"Account",
       {{"- (BOOL)isPremium", "return YES;\n"},
        {"- (NSString *)nameOf:(Person *)arg1 in:(NSError **)arg2",
         "arg1 = nil;\n%orig(arg1, arg2);\nreturn @\"مستخدم\";\n"},
        {"- (void)showAdvertisement", ""}}},
      {"Shop",
       {{"+ (id)itemWithName:(NSString *)arg1 count:(int)arg2",
         "arg1 = @\"a \\042quoted\\042 \\134 \\045end of */ it\";\narg2 = 999;\nreturn %orig(arg1, "
         "arg2);\n"}}},
  };
  EXPECT_EQ(read.hooks, expected);
  EXPECT_EQ(read.classes, (std::vector<std::string>{"NSError", "Person"}));
  EXPECT_EQ(read.comments.at(2),
            "// Skipped: Account - (PriceKind)kind: the type PriceKind is not understood.");
  EXPECT_EQ(LogosReader::read(logosSource((*patches)[2]).text).hooks["Store"].begin()->second,
            "arg1 = 18446744073709551615ULL;\narg2 = NO;\n%orig(arg1, arg2);\n");
}

TEST(Source, SaysWhatItSkipsAndLetsNothingOut) {
  const PropertyListValue arguments{PropertyListValue::Dictionary{{"1", whole(5)}}};
  const PropertyListValue zeroth{PropertyListValue::Dictionary{{"0", whole(5)}}};
  const PropertyListValue twice{PropertyListValue::Dictionary{{"1", whole(5)}, {"01", whole(6)}}};
  const PropertyListValue beyond{PropertyListValue::Dictionary{{"2", whole(5)}}};
  const FlexPatch patch{
      "name */\n%ctor { evil(); }\n",
      "com.example\n%hook Evil",
      {
          {"Good", "- (int)a", whole(1), {}},
          {"Good", "- (int)a", whole(2), {}},
          {"Good", "- (int)b:(int)x", {}, {}},
          {"Good", "- (int)b:(int)x", {}, zeroth},
          {"Good", "- (int)b:(int)x", {}, beyond},
          {"Good", "- (int)b:(int)x", {}, twice},
          {"Good", "- (int)b:(int)x", {}, text("5")},
          {"Good", "- (int)b:(int)x", {}, PropertyListValue{PropertyListValue::Dictionary{}}},
          {"Good", "- (void)c", whole(1), {}},
          {"Good", "- (void)c:(int)x", text("nil"), arguments},
          {"Good\n%end\n%hook Evil", "- (int)a", whole(1), {}},
          {"Module.Swift", "- (int)a", whole(1), {}},
          {"operator", "- (int)a", whole(1), {}},
          {"id", "- (int)a", whole(1), {}},
          {"Only", "- (int)a { } %end //", whole(1), {}},
          {"", "", {}, {}},
          {"Good", "- (int)b:(int)x", {}, arguments},
      }};
  const LogosSource source = logosSource(patch);
  EXPECT_EQ(source.hooked, 2U);
  EXPECT_EQ(source.skipped, 15U);
  const ReadSource read = LogosReader::read(source.text);
  ASSERT_EQ(read.hooks.size(), 1U);
  EXPECT_EQ(read.hooks.at("Good"),
            (std::map<std::string, std::string>{{"- (int)a", "return 1;\n"},
                                                {"- (int)b:(int)arg1", "arg1 = 5;\nreturn %orig(arg1);\n"}}));
  const std::vector<std::string> reasons{"an earlier unit has set the method",
                                         "it sets nothing",
                                         "the method has no argument 0",
                                         "the method has no argument 2",
                                         "argument 1 is set twice",
                                         "its arguments are no dictionary",
                                         "it sets nothing",
                                         "the method gives no value",
                                         "arguments are set for a method that is not to be called",
                                         "the class name is not understood",
                                         "the class name is not understood",
                                         "the class name is not understood",
                                         "the class name is not understood",
                                         "the method is not understood",
                                         "no class is named"};
  ASSERT_EQ(read.comments.size(), reasons.size() + 2);
  for (std::size_t index = 0; index < reasons.size(); ++index) {
    EXPECT_TRUE(read.comments[index + 2].ends_with(": " + reasons[index] + ".")) << read.comments[index + 2];
  }
}

}  // namespace
