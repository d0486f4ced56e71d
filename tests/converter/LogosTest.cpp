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

std::string declared(const std::string& signature) {
  try {
    return methodSignature(signature).declaration();
  } catch (const NotUnderstood& reason) {
    return reason.what();
  }
}

TEST(Signatures, AreDeclaredAnewOrNotUnderstood) {
  const std::pair<const char*, const char*> rows[] = {
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
      {"- (CGImageRef)image:(CFStringRef)s", "- (CGImageRef)image:(CFStringRef)arg1"},
  };
  for (const auto& [signature, declaration] : rows) EXPECT_EQ(declared(signature), declaration) << signature;
  for (const std::string type :
       {"PriceKind", "struct Own", "long double", "short long", "int (*)(int)", "id<Open", "struct *",
        "struct int *", "NSZone", "NULL *", "CGMadeUpRef", "CGThing *", ""})
    EXPECT_EQ(declared("- (" + type + ")x"), "the type " + type + " is not understood");
  for (const char* none : {"", "(void)x", "- (void)", "- (void)x {", "- (void)x\n%end", "- (void)x:(void)y",
                           "- (void)x:(int)a, ...", "- (void)x:(int)a y:(int)b z", "- (void)2x", "- (void"})
    EXPECT_EQ(declared(none), "the method is not understood") << none;
}

// Empty where it is refused.
std::string expressed(const char* type, const PropertyListValue& value) {
  try {
    return valueExpression(value, valueType(type));
  } catch (const NotUnderstood&) {
    return "";
  }
}

TEST(Values, FitTheirTypesOrAreRefused) {
  const PropertyListValue large{UINT64_MAX};
  const struct {
    const char* type;
    PropertyListValue value;
    const char* expression;
  } rows[] = {
      {"BOOL", {true}, "YES"},
      {"bool", text("NO"), "NO"},
      {"BOOL", whole(1), "YES"},
      {"int", whole(-2147483648), "-2147483648"},
      {"int", {true}, "1"},
      {"unsigned char", whole(255), "255"},
      {"NSUInteger", text("18446744073709551615"), "18446744073709551615ULL"},
      {"NSUInteger", large, "18446744073709551615ULL"},
      {"NSNumber *", large, "@(18446744073709551615ULL)"},
      {"double", large, "18446744073709551616.0"},
      {"NSInteger", text("-0x10"), "-16"},
      {"long", text("-9223372036854775808"), "(-9223372036854775807LL - 1)"},
      {"double", {0.1}, "0.1"},
      {"CGFloat", whole(3), "3.0"},
      {"double", text("1e300"), "1e+300"},
      {"NSString *", text("words"), "@\"words\""},
      {"NSString *", text("(null)"), "nil"},
      {"NSMutableString *", text("m"), "[NSMutableString stringWithString:@\"m\"]"},
      {"id", text("words"), "@\"words\""},
      {"id", {true}, "@YES"},
      {"NSNumber *", text("-5"), "@(-5)"},
      {"NSNumber *", text("1.5"), "@(1.5)"},
      {"NSNumber *", text("NO"), "@NO"},
      {"Person *", text("nil"), "nil"},
      {"void (^)(int)", text("null"), "nil"},
      {"const char *", text("NULL"), "NULL"},
  };
  for (const auto& row : rows) EXPECT_EQ(expressed(row.type, row.value), row.expression) << row.type;
  const std::map<const char*, std::vector<PropertyListValue>> refused{
      {"BOOL", {whole(2), text("maybe")}},
      {"int", {whole(2147483648), {1.5}, large, text("nil")}},
      {"unsigned char", {whole(256)}},
      {"NSUInteger", {whole(-1), text("18446744073709551616")}},
      {"NSInteger", {large}},
      {"long", {text("-9223372036854775809"), text("1); system(\"x\"")}},
      {"float", {text("1e300")}},
      {"double", {text("nan"), text("1.5 ")}},
      {"NSString *", {whole(5), {std::string("a\0b", 3)}}},
      {"NSNumber *", {text("many")}},
      {"Person *", {text("words")}},
      {"const char *", {text("words")}},
      {"CGRect", {text("nil")}},
      {"id", {{PropertyListValue::Array{}}}},
  };
  for (const auto& [type, values] : refused)
    for (const auto& value : values) EXPECT_EQ(expressed(type, value), "") << type;
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
  const auto setting = [](PropertyListValue::Dictionary arguments) {
    return PropertyListValue{std::move(arguments)};
  };
  const PropertyListValue arguments = setting({{"1", whole(5)}});
  const std::pair<FlexUnit, const char*> rows[] = {
      {{"Good", "- (int)a", whole(1), {}}, ""},
      {{"Good", "- (int)a", whole(2), {}}, "an earlier unit has set the method"},
      {{"Good", "- (int)b:(int)x", {}, {}}, "it sets nothing"},
      {{"Good", "- (int)b:(int)x", {}, setting({{"0", whole(5)}})}, "the method has no argument 0"},
      {{"Good", "- (int)b:(int)x", {}, setting({{"2", whole(5)}})}, "the method has no argument 2"},
      {{"Good", "- (int)b:(int)x", {}, setting({{"1", whole(5)}, {"01", whole(6)}})},
       "argument 1 is set twice"},
      {{"Good", "- (int)b:(int)x", {}, text("5")}, "its arguments are no dictionary"},
      {{"Good", "- (int)b:(int)x", {}, setting({})}, "it sets nothing"},
      {{"Good", "- (void)c", whole(1), {}}, "the method gives no value"},
      {{"Good", "- (void)c:(int)x", text("nil"), arguments},
       "arguments are set for a method that is not to be called"},
      {{"Good\n%end\n%hook Evil", "- (int)a", whole(1), {}}, "the class name is not understood"},
      {{"Module.Swift", "- (int)a", whole(1), {}}, "the class name is not understood"},
      {{"operator", "- (int)a", whole(1), {}}, "the class name is not understood"},
      {{"id", "- (int)a", whole(1), {}}, "the class name is not understood"},
      {{"Only", "- (int)a { } %end //", whole(1), {}}, "the method is not understood"},
      {{"", "", {}, {}}, "no class is named"},
      {{"Good", "- (int)b:(int)x", {}, arguments}, ""},
  };
  FlexPatch patch{"name */\n%ctor { evil(); }\n", "com.example\n%hook Evil", {}};
  for (const auto& [unit, reason] : rows) patch.units.push_back(unit);
  const LogosSource source = logosSource(patch);
  EXPECT_EQ(source.hooked, 2U);
  EXPECT_EQ(source.skipped, 15U);
  const ReadSource read = LogosReader::read(source.text);
  ASSERT_EQ(read.hooks.size(), 1U);
  EXPECT_EQ(read.hooks.at("Good"),
            (std::map<std::string, std::string>{{"- (int)a", "return 1;\n"},
                                                {"- (int)b:(int)arg1", "arg1 = 5;\nreturn %orig(arg1);\n"}}));
  ASSERT_EQ(read.comments.size(), source.skipped + 2) << "behind the name and the application";
  auto comment = read.comments.begin() + 2;
  for (const auto& [unit, reason] : rows) {
    if (*reason == '\0') continue;
    EXPECT_TRUE(comment->ends_with(std::string(": ") + reason + ".")) << *comment;
    ++comment;
  }
}

}  // namespace
