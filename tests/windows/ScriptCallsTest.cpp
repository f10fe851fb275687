#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/ModuleCount.h"
#include "windows/CSpecimen.h"
#include "windows/Script.h"

namespace veldmark {
namespace {

struct ScriptCase {
  const wchar_t* language;
  const wchar_t* script;
  const char16_t* left_in_name;
};

class ScriptCalls : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr))); }
  void TearDown() override {
    CoUninitialize();
    EXPECT_EQ(CSpecimen::alive, 0);
  }

  void Check(std::initializer_list<ScriptCase> cases) {
    for (const ScriptCase& test : cases) {
      SCOPED_TRACE(ToUtf8(reinterpret_cast<const char16_t*>(test.script)));
      const std::int32_t before = ModuleHolds();
      const Ref<CSpecimen> specimen = Make<CSpecimen>();
      auto* face = static_cast<IDispatch*>(abi::HandOutObject(specimen.Get()));
      EXPECT_EQ(RunScript(test.language, *face, test.script), S_OK);
      EXPECT_EQ(ToUtf8(specimen->Name), ToUtf8(test.left_in_name));
      EXPECT_EQ(face->Release(), 0u);
      EXPECT_TRUE(ModuleHolds() == before || !leaves_nothing_);
    }
  }

  bool leaves_nothing_ = true;
};

TEST_F(ScriptCalls, ErrorsArriveWithTheNumberSourceAndTextThatWereRaised) {
  const auto* vb = L"VBScript";
  Check({
      {vb,
       L"On Error Resume Next\n"
       L"For Each n In Array(5, 13, 91, 457, 911, 2221, &H80040001, 438, 65535)\n"
       L"  o.Fail n, \"d\" : s = s & Err.Number & \" \" & Err.Description & \";\"\n"
       L"  Err.Clear\n"
       L"Next\n"
       L"o.Name = s",
       u"5 d;13 d;91 d;457 d;911 d;2221 d;-2147221503 d;438 d;65535 d;"},
      {vb, L"On Error Resume Next\no.Fail 70, \"denied\"\no.Name = Err.Source",
       u"Veldmark2.CSpecimen"},
      {vb, L"On Error Resume Next\no.Number = 1E12\no.Name = Err.Number", u"6"},
      {L"JScript",
       L"var s = '';\n"
       L"var numbers = [5, 13, 91, 457, 911, 2221];\n"
       L"for (var i = 0; i < numbers.length; ++i)\n"
       L"  try { o.Fail(numbers[i], 'd'); }\n"
       L"  catch (e) { s += (e.number & 0xFFFF) + e.message + ';'; }\n"
       L"try { o.Fail(-2147221503, 'own'); } catch (e) { s += e.number + e.message; }\n"
       L"o.Name = s;",
       u"5d;13d;91d;457d;911d;2221d;-2147221503own"},
  });
}

TEST_F(ScriptCalls, ArgumentsCrossInEveryShapeThatScriptsSend) {
  const auto* vb = L"VBScript";
  const auto* js = L"JScript";
  Check({
      {vb, L"o.Name = o.Join(\"a\") & o.Join(\"b\", 7) & o.Join(\"c\", , 2)", u"a-b7c-c-"},
      {vb, L"o.Number = \"41\"\no.Number = o.Number + 1\no.Name = o.nUMBER", u"42"},
      {vb, L"Set d = o\no.Name = d(3).Name & o.Item(\"k\").Name & o.Children(4).Name",
       u"item 3item kitem 4"},
      {vb, L"For Each n In o\n  s = s & n\nNext\no.Name = s", u"123"},
      {vb,
       L"t = \"x\" : n = 4 : f = False\n"
       L"o.Change t, v, n, f\n"
       L"o.Name = t & v & n & f & TypeName(n)",
       u"x!changed5TrueLong"},
      {vb,
       L"t = 7 : n = 4 : f = 0\n"
       L"o.Leave t, v, n, f\n"
       L"o.Name = TypeName(t) & TypeName(v) & TypeName(n) & TypeName(f)",
       u"IntegerEmptyIntegerInteger"},
      {vb,
       L"t = \"x\"\nOn Error Resume Next\no.ChangeAndFail t\no.Name = Err.Number & \"[\" & t & "
       L"\"]\"",
       u"13[]"},
      {vb, L"o.Create a\nb = a.Name\no.Create a\nIf a Is Nothing Then o.Name = b & o.NameOf(a)",
       u"madeNothing"},
      {vb,
       L"Set d = New RegExp\nd.Pattern = \"p\"\n"
       L"o.Name = o.EchoObject(d).Pattern & (o.Echo(o) Is o)",
       u"pTrue"},
      {vb, L"a = o.Split(Array(\"a\", 1, \"\"))\nb = o.Split(a)\no.Name = VarType(a) & VarType(b)",
       u"82008200"},
      {vb, L"b = Array(1, 2, 3)\nr = o.Reverse(b)\no.Name = VarType(r) & VarType(b)", u"82098209"},
      {vb, L"o.Name = Len(o.Echo(\"a\" & Chr(0) & \"b\")) & Len(o.Echo(String(40000, \"x\")))",
       u"340000"},
      {js,
       L"var d = o.Children; o.Name = o.Join('a') + o.Join('b', 7) + d(3).Name + o.Item('k').Name;",
       u"a-b7item 3item k"},
  });
}

TEST_F(ScriptCalls, AnEnumeratorObjectWalksTheList) {
  // Wine's engine never lets go of the enumerator that it was given.
  leaves_nothing_ = false;
  Check({{L"JScript",
          L"var s = '';\n"
          L"for (var e = new Enumerator(o); !e.atEnd(); e.moveNext()) s += e.item();\n"
          L"o.Name = s;",
          u"123"}});
}

}  // namespace
}  // namespace veldmark
