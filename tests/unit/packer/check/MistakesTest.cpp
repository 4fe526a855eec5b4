// The mistakes that authors make, one by one: each is found where it stands, under its name, and
// nothing else is.

#include <functional>

#include <elf.h>
#include <gmock/gmock.h>

#include "JarBuilder.h"
#include "PackageFixture.h"

namespace vessant::test {
namespace {

using testing::IsEmpty;

using Places = std::vector<std::string>;

TEST_F(PackageFixture, FindsNothingInAGoodPackage) {
  EXPECT_THAT(found(), IsEmpty());
}

/// Statements from line 2 on; the places are of setup.instructions.
struct ScriptMistake {
  const char* statements;
  Places places;
};

class ScriptMistakes : public PackageFixture, public testing::WithParamInterface<ScriptMistake> {};

TEST_P(ScriptMistakes, AreFound) {
  Places wanted;
  for (const std::string& place : GetParam().places)
    wanted.push_back("setup.instructions:" + place);
  script(GetParam().statements);
  EXPECT_EQ(found(), wanted) << GetParam().statements;
}

constexpr const char* kFind = "FIND_JVM 1 1\nJMP0 @N1@ none\n";
constexpr const char* kLaunchAndEnd = "LAUNCH \"@S2@\" 1\nGOTO end\n:none\nILAUNCH 0 0\n:end\n";

/// A statement in line 4 of a script that is good without it.
ScriptMistake at4(const std::string& statement, const std::string& name) {
  static std::vector<std::unique_ptr<std::string>> kept;
  kept.push_back(std::make_unique<std::string>(kFind + statement + "\n" + kLaunchAndEnd));
  if (name.empty()) return {kept.back()->c_str(), {}};
  return {kept.back()->c_str(), {"4 " + name}};
}

INSTANTIATE_TEST_SUITE_P(
    Commands, ScriptMistakes,
    testing::Values(at4("FINDJVM 1 1", "unknown-command"), at4("goto end", "unknown-command"),
                    at4("\"\"", "empty-statement"), at4("//x", "bad-comment"),
                    at4("# x", "bad-comment"), at4("-- x", "bad-comment"), at4("// x", ""),
                    at4("//", ""), at4("VERIFY 1 1", "missing-argument"),
                    at4("VERIFY", "missing-argument"), at4("GOTO", "missing-argument"),
                    at4("JMP0 @N2@", "missing-argument"), at4("SET S1", "missing-argument"),
                    at4("LAUNCH @S2@", "missing-argument"), at4("ILAUNCH 17", "missing-argument"),
                    at4("VERIFY 1 2 17", "bad-boolean"), at4("VERIFY yes 1 17", "bad-number"),
                    at4("VERIFY 1x 1 17", "bad-number"), at4("VERIFY 1 1 java.jvm", "bad-number"),
                    at4("ILAUNCH 17 40000", "number-out-of-range"),
                    at4("ILAUNCH 17 -1", "number-out-of-range"),
                    at4("ILAUNCH 99999999999 1", "number-out-of-range"),
                    at4("JMP0 none @N1@", "bad-number")));

INSTANTIATE_TEST_SUITE_P(
    Texts, ScriptMistakes,
    testing::Values(
        at4("SET S1 = hello world", "cut-text"), at4("SET S1 = \"hello world\"", ""),
        at4("SET S1 = \"hello\" world", "text-behind-quote"),
        at4("SET S1 = \"hello", "unclosed-quote"), at4("SET S1 = \"say \"\"hi\"\"\"", ""),
        at4("LAUNCH my file.jvm 1", "bad-number"), at4("LAUNCH \"my.jvm 1", "unclosed-quote"),
        at4("LAUNCH \"my file.jvm\" 1", ""), at4("JMP0 1 end now", "ignored-argument"),
        at4("INITIALIZE_UI 1", "ignored-argument"), at4("INITIALIZE_UI // show", ""),
        at4("SET N1 = x", "bad-number"), at4("SET N1 = 99999999999", "number-out-of-range"),
        at4("SET N1 = \"5\"", ""), at4("SET S1 = \"\"", "refused-statement")));

INSTANTIATE_TEST_SUITE_P(Variables, ScriptMistakes,
                         testing::Values(at4("SET S11 = x", "unknown-variable"),
                                         at4("SET N6 = 1", "unknown-variable"),
                                         at4("SET X1 = x", "unknown-variable"),
                                         at4("SET @S1@ = x", "unknown-variable"),
                                         at4("SET S1 = @S0@", "unknown-variable"),
                                         at4("SET S1 = @N6@", "unknown-variable"),
                                         at4("SET S1 = @JVM_HOME@", "unknown-variable"),
                                         at4("SET S1 = a@b", "lone-mark"), at4("SET S1 = a@@b", ""),
                                         at4("SET S1 = @S3@", "unset-variable"),
                                         at4("LAUNCH \"@S1@\" 1", "home-for-jvm-file")));

INSTANTIATE_TEST_SUITE_P(
    Labels, ScriptMistakes,
    testing::Values(at4("JMP0 @N2@ nowhere", "unknown-label"),
                    at4("JMP0 @N2@ \"end\"", "unknown-label"),
                    at4("JMP0 @N2@ End", "unknown-label"), at4("JMP0 @N1@ :none", "unknown-label"),
                    at4(":label and more", "text-behind-label"), at4(":", "blank-label"),
                    ScriptMistake{"FIND_JVM 1 1\n:a\nJMP0 @N1@ a\n:a\nLAUNCH \"@S2@\" 1\n",
                                  {"5 doubled-label"}},
                    ScriptMistake{":again\nFIND_JVM 1 1\nJMP0 @N1@ again\nLAUNCH \"@S2@\" 1\n",
                                  {"2 label-in-first-statement"}},
                    ScriptMistake{":title\nFIND_JVM 1 1\nJMP0 @N1@ none\nLAUNCH \"@S2@\" 1\n"
                                  ":none\nILAUNCH 0 0\n",
                                  {"2 label-in-first-statement"}}));

INSTANTIATE_TEST_SUITE_P(
    Flow, ScriptMistakes,
    testing::Values(
        ScriptMistake{"FIND_JVM 1 1\nJMP0 @N1@ end\nLAUNCH \"@S2@\" 1\n:end\n",
                      {"3 ends-without-launch"}},
        ScriptMistake{"FIND_JVM 1 1\n", {"2 ends-without-launch"}},
        ScriptMistake{"FIND_JVM 1 1\nGOTO end\nLAUNCH \"@S2@\" 1\n:end\n",
                      {"3 ends-without-launch", "4 unreachable-statement"}},
        ScriptMistake{"LAUNCH java.txt 1\nGOTO end\n// x\nVERIFY 1 1 17\n:end\n",
                      {"5 unreachable-statement"}},
        ScriptMistake{"JMP0 0 end\nFIND_JVM 1 1\nLAUNCH \"@S2@\" 1\n:end\n",
                      {"2 ends-without-launch", "3 unreachable-statement"}},
        ScriptMistake{"// x\n:again\nFIND_JVM 1 1\nGOTO again\n", {"5 endless-script"}},
        // What is known of a number on a way is not forgotten.
        ScriptMistake{"FIND_JVM 1 1\nJMP0 @N1@ a\nLAUNCH \"@S2@\" 1\n:a\nJMP0 @N1@ b\nGOTO end\n"
                      ":b\nILAUNCH 0 0\n:end\n",
                      {}},
        ScriptMistake{"SET N2 = 1\nFIND_JVM 1 1\nJMP0 @N1@ a\nLAUNCH \"@S2@\" 1\nSET N2 = 0\n:a\n"
                      "JMP0 @N2@ end\nILAUNCH 0 0\n:end\n",
                      {}},
        // Where a computed label leads to cannot be told.
        ScriptMistake{"SET S1 = b\nFIND_JVM 1 1\nGOTO @S1@\n:a\nLAUNCH \"@S2@\" 1\nGOTO end\n:b\n"
                      "ILAUNCH 0 0\n:end\n",
                      {}}));

INSTANTIATE_TEST_SUITE_P(
    Ids, ScriptMistakes,
    testing::Values(at4("VERIFY 1 1 99", "unknown-id"), at4("VERIFY 1 1 4", "wrong-kind"),
                    at4("ILAUNCH 99 0", "unknown-id"), at4("ILAUNCH 1 0", "wrong-kind"),
                    at4("ILAUNCH 17 0", ""), at4("EXECUTE_LAUNCHER 0", "unknown-id"),
                    at4("EXECUTE_LAUNCHER 17", "wrong-kind"), at4("ILAUNCH @N2@ 0", "")));

INSTANTIATE_TEST_SUITE_P(
    Searches, ScriptMistakes,
    testing::Values(
        // What sets a variable stands behind its use, on every way.
        ScriptMistake{"LAUNCH \"@S2@\" 1\nFIND_JVM 1 1\n", {"2 unset-variable"}},
        ScriptMistake{"FIND_JVM 1 1\nJMP0 @N1@ none\nSET S3 = @S4@\nLAUNCH \"@S2@\" 1\n"
                      "SET S4 = x\nGOTO end\n:none\nILAUNCH 0 0\n:end\n",
                      {"4 unset-variable"}},
        ScriptMistake{"JMP0 @N2@ b\n:a\nSET S4 = @S3@\nILAUNCH 17 0\nGOTO end\n:b\nSET S3 = x\n"
                      "GOTO a\n:end\n",
                      {}},
        // Nobody asked whether there is anything to launch with.
        ScriptMistake{"FIND_JVM 1 1\nLAUNCH \"@S2@\" 1\n", {"3 unchecked-search"}},
        ScriptMistake{"FIND_JVM 1 1\nJMP0 @N2@ a\n:a\nLAUNCH \"@S2@\" 1\n", {"5 unchecked-search"}},
        ScriptMistake{"FIND_JVM 1 1\nSET N2 = @N1@\nJMP0 @N2@ a\nLAUNCH \"@S2@\" 1\nGOTO b\n:a\n"
                      "ILAUNCH 0 0\n:b\n",
                      {}},
        ScriptMistake{"VERIFY 1 1 17\nSET S2 = \"@S1@/my.jvm\"\nLAUNCH \"@S2@\" 1\n", {}},
        at4("FIND_JVM, 1 1", "unknown-command"), at4("VERIFY 1, 1 17", "bad-number"),
        at4("VERIFY 1,1,17", "missing-argument"), at4("VERIFY 1 1 17;", "bad-number"),
        at4("VERIFY(1,1,17)", "unknown-command"), at4("VERIFY\t1  1 17", ""),
        at4("LAUNCH S2 0", "not-a-file"), at4("LAUNCH \"17\" 0", ""),
        at4("LAUNCH 17 0", "not-a-file"), at4("LAUNCH java.jvm 0", "not-a-file"),
        at4("LAUNCH \"java.jvm\" 0", "not-a-file"), at4("LAUNCH other.jvm 0", ""),
        at4("LAUNCH '@S2@' 0", "single-quotes"), at4("SET S1 = 'x'", "single-quotes"),
        at4("SET S1 = it's", ""), at4("LAUNCH @S2@ 0.5", "bad-number"),
        at4("LAUNCH @S2@ 5s", "bad-number")));

/// A change of a text, and what is found then.
struct TextMistake {
  const char* file;
  std::string from;
  std::string to;
  Places found;
};

class TextMistakes : public PackageFixture, public testing::WithParamInterface<TextMistake> {};

TEST_P(TextMistakes, AreFound) {
  const TextMistake& mistake = GetParam();
  change(mistake.file, mistake.from, mistake.to);
  EXPECT_EQ(found(), mistake.found) << mistake.to;
}

TextMistake inJvm(const std::string& from, const std::string& to, const std::string& place) {
  return {"java.jvm", from, to, place.empty() ? Places{} : Places{"java.jvm:" + place}};
}

INSTANTIATE_TEST_SUITE_P(
    Forms, TextMistakes,
    testing::Values(
        inJvm("DESC",
              "\xEF\xBB\xBF"
              "DESC",
              "1 byte-order-mark"),
        inJvm("DESC: Java 17", "DESC: Java\r17", "1 stray-carriage-return"),
        inJvm("DESC: Java 17\n", "DESC: Java 17\r\n", ""),
        inJvm("DESC: Java", std::string("DESC: Ja\0va", 11), "1 zero-byte"),
        inJvm("/:\n", "", "6 missing-block-end"), inJvm("/:\n", ":/\n", "9 missing-block-end"),
        inJvm("DESC: Java 17\n", "DESC: Java 17\n/:\n", "2 stray-block-end"),
        inJvm("DESC: Java 17\n", "DESC: Java 17\n# a comment\n", "2 no-comments"),
        inJvm("DESC: Java 17\n", "DESC: Java 17\n// see: there\n", "2 no-comments"),
        inJvm("  jre\n", "  # jre\n", "7 no-comments"),
        inJvm("DESC: Java 17\n", "DESC: Java 17\nonly words\n", "2 missing-colon"),
        inJvm("DESC: Java 17\n", "DESC: Java 17\n: x\n", "2 missing-tag-name"),
        inJvm("DESC: Java 17", "DESC: \"Java 17", "1 unclosed-quote"),
        inJvm("DESC: Java 17", "DESC: \"Java\" 17", "1 text-behind-quote"),
        inJvm("DESC: Java 17\n", "DESC: Java 17\nDESC: Java\n", "2 doubled-tag"),
        inJvm("JVM_EXE: bin/java", "JVM_EXE:\nbin/java\nbin/javac\n/:", "5 unused-value"),
        inJvm("DESC: Java 17", "DESC: Java \xC3\xA9", "1 raw-title"),
        inJvm("DESC: Java 17", "DESC: Java \\u00e9", ""),
        inJvm("DESC: Java 17", "DESC: C:\\users \\U00E9", ""),
        inJvm("DESC: Java 17", "DESC: Java \\ue9 17", "1 bad-escape"),
        inJvm("DESC: Java 17", "DESC: Java \\u00e", "1 bad-escape"),
        inJvm("DESC: Java 17", "DESC: Java \\u 17 x", "1 bad-escape"),
        inJvm("DESC: Java 17", "DESC: Java \\u0000", "1 bad-escape"),
        inJvm("PLATFORM_HINT: JAVA_HOME", "PLATFORM_HINT:\n/:", "5 empty-block"),
        TextMistake{"setup.instructions",
                    "INSTRUCTIONS",
                    "INSTRUCTION",
                    {"setup.instructions:1 unknown-tag"}},
        TextMistake{
            "setup.launch", "DISPLAY_CONSOLE", "DISPLAY_CONSOL", {"setup.launch:2 unknown-tag"}},
        TextMistake{"setup.launch",
                    "DISPLAY_CONSOLE: 1",
                    "DISPLAY_CONSOLE: yes",
                    {"setup.launch:2 bad-boolean"}},
        TextMistake{
            "setup.launch", "DESC: Hello", "DESC: H\xC3\xA9llo", {"setup.launch:1 raw-title"}},
        TextMistake{"setup.launch",
                    "DESC: Hello\n",
                    "DESC: Hello\nDESC: Hello\n",
                    {"setup.launch:2 doubled-tag"}},
        TextMistake{"setup.launch",
                    "exec \"@JVM_HOME@/@JVM_EXE@\"",
                    "\"@JVM_HOME@/@JVM_EXE@\"",
                    {"setup.launch:3 text-behind-quote"}}));

INSTANTIATE_TEST_SUITE_P(
    JvmFiles, TextMistakes,
    testing::Values(
        inJvm("DESC: Java 17\n", "", "1 missing-tag"),
        inJvm("JVM_EXE: bin/java\n", "", "1 missing-tag"),
        inJvm("JVM_PROPERTIES: java.specification.version=17\n", "", "1 missing-tag"),
        inJvm("CLASSPATH: \"-classpath \"\n", "", "1 missing-tag"),
        inJvm("CLASSPATH_SEPARATOR: \":\"\n", "", "1 missing-tag"),
        inJvm("SYSTEM: \"-D\"\n", "", "1 missing-tag"),
        inJvm("SEARCH_ALL: 0", "USE_CP_ENV_VAR: 1", "1 missing-tag"),
        inJvm("SEARCH_ALL: 0", "SEARCH_ALL: yes", "4 bad-boolean"),
        inJvm("SEARCH_ALL: 0", "SEARCH_AL: 0", "4 unknown-tag"),
        inJvm("SEARCH_ALL: 0", "VENDOR: mine", "4 unknown-tag"),
        inJvm("=17", "17", "2 bad-property"), inJvm("=17", ">=17", "2 bad-property"),
        inJvm("=17", "=>17", "2 bad-property"), inJvm("=17", "<21", "2 bad-property"),
        inJvm("=17", "~17", "2 bad-property"), inJvm("=17", "==17", "2 bad-property"),
        inJvm("=17", "=17+", "2 bad-property"), inJvm("=17", "=1.*", "2 bad-property"),
        inJvm("java.specification.version=17", "java.version=17-21", "2 bad-property"),
        inJvm("java.specification.version=17", "java.version=17-ea...", ""),
        inJvm("java.specification.version=17", "java.verison=17...", "2 bad-property"),
        inJvm("java.specification.version=17", "java.verson=17...", "2 bad-property"),
        inJvm("java.specification.version=17", "com.example.flag=1", ""),
        inJvm("java.specification.version=17", "os.arch=amd64", ""),
        inJvm("java.specification.version=17", "os.arch=x86_64", "2 bad-property"),
        inJvm("java.specification.version=17", "os.arch=arm64", "2 bad-property"),
        inJvm("java.specification.version=17", "os.name=Linux", ""),
        inJvm("java.specification.version=17", "os.name=Li...", ""),
        inJvm("java.specification.version=17", "os.name=linux", "2 bad-property"),
        inJvm("java.specification.version=17", "os.name=Windows...", "2 bad-property"),
        inJvm("java.specification.version=17", "sun.arch.data.model=64", ""),
        inJvm("java.specification.version=17", "sun.arch.data.model=64bit", "2 bad-property"),
        inJvm("JVM_PROPERTIES: java.specification.version=17",
              "JVM_PROPERTIES:\nvessant.java.min.21=true\nvessant.java.max.17=true\n/:",
              "4 bad-property"),
        inJvm("JVM_PROPERTIES: java.specification.version=17",
              "JVM_PROPERTIES:\nvessant.java.min.17=true\nvessant.java.max.17=true\n/:", ""),
        inJvm("JVM_PROPERTIES: java.specification.version=17",
              "JVM_PROPERTIES:\njava.version=17...\njava.version=21...\n/:", "4 bad-property"),
        inJvm("JVM_PROPERTIES: java.specification.version=17",
              "JVM_PROPERTIES:\njava.version=17...\njava.version=17.0...\n/:", ""),
        inJvm("=17", "=8", "2 bad-property"), inJvm("=17", "=17-21", "2 bad-property"),
        inJvm("java.specification.version", "java.version", "2 bad-property"),
        inJvm("java.specification.version=17", "java.version=17...", ""),
        inJvm("java.specification.version", "java specification version", "2 bad-property"),
        inJvm("java.specification.version=17", "=17", "2 bad-property"),
        inJvm("java.specification.version=17", "vessant.java.min.17=true", ""),
        inJvm("java.specification.version=17", "vessant.java.min.17=yes", "2 bad-property"),
        inJvm("java.specification.version=17", "vessant.java.min.1.8=true", "2 bad-property"),
        inJvm("java.specification.version=17", "vessant.java.least.17=true", "2 bad-property"),
        inJvm("java.specification.version=17", "vessant.bits=64", ""),
        inJvm("java.specification.version=17", "vessant.module.java.desktop=true", ""),
        inJvm("JVM_EXE: bin/java", "JVM_EXE: /usr/bin/java", "3 bad-executable"),
        inJvm("JVM_EXE: bin/java", "JVM_EXE: bin\\java", "3 bad-executable"),
        inJvm("JVM_EXE: bin/java", "JVM_EXE: bin/java -Xmx1g", "3 bad-executable"),
        inJvm("JVM_EXE: bin/java", "JVM_EXE: bin/javac", "3 bad-executable"),
        inJvm("JVM_EXE: bin/java", "JVM_EXE: bin/javaw", "3 bad-executable"),
        inJvm("JVM_EXE: bin/java", "JVM_EXE: java", "3 bad-executable"),
        inJvm("JVM_EXE: bin/java", "JVM_EXE: jre/bin/java", ""),
        inJvm("\"-classpath \"", "\"classpath \"", "10 bad-option"),
        inJvm("\"-classpath \"", "\"--class-path=\"", ""),
        inJvm("SYSTEM: \"-D\"", "SYSTEM: \"D\"", "12 bad-option"),
        inJvm("SYSTEM_SEPARATOR: \"=\"", "SYSTEM_SEPARATOR: \":\"", "13 bad-separator"),
        inJvm("SEARCH_ALL: 0", "REQ_JAVA_ARGS: Xmx1g", "4 bad-option"),
        inJvm("SEARCH_ALL: 0", "REQ_JAVA_ARGS: -Xmx1g", ""),
        inJvm("SEARCH_ALL: 0", "SET_ENV_FOR_WIZARD: export A=1", "4 bad-setting"),
        inJvm("SEARCH_ALL: 0", "SET_ENV_FOR_WIZARD: A=1 2", ""),
        inJvm("JVM_EXE: bin/java", "JVM_EXE: bin/java.exe", "3 bad-executable"),
        inJvm("\":\"", "\";\"", "11 bad-separator"),
        inJvm("PLATFORM_HINT: JAVA_HOME", "PLATFORM_HINT: $JAVA_HOME", "5 bad-hint"),
        inJvm("PLATFORM_HINT: JAVA_HOME", "PLATFORM_HINT: JAVA_HOME JDK_HOME", "5 bad-hint"),
        inJvm("  jre\n", "  ~/jre\n", "7 bad-hint"),
        inJvm("  jre\n", "  $HOME/jre\n", "7 bad-hint"),
        inJvm("  jre\n", "  /usr/bin/java\n", "7 bad-hint"),
        inJvm("  jre\n", "  /opt/jdk-*\n", "7 bad-hint"), inJvm("  jre\n", "  /opt/jdk@17\n", ""),
        inJvm("\"-classpath \"", "-classpath ", "10 missing-blank"),
        inJvm("SEARCH_ALL: 0", "SET_ENV_FOR_WIZARD: NAME", "4 bad-setting")));

/// A launch command, and the name of what is found in it.
struct CommandMistake {
  const char* command;
  const char* name;
};

class CommandMistakes : public PackageFixture,
                        public testing::WithParamInterface<CommandMistake> {};

TEST_P(CommandMistakes, AreFound) {
  command(std::string("COMMAND: ") + GetParam().command);
  const std::string name = GetParam().name;
  EXPECT_EQ(found(), name.empty() ? Places{} : Places{"setup.launch:3 " + name})
      << GetParam().command << testing::PrintToString(texts());
}

#define JAVA "exec \"@JVM_HOME@/@JVM_EXE@\" "

INSTANTIATE_TEST_SUITE_P(
    Macros, CommandMistakes,
    testing::Values(
        CommandMistake{JAVA "%CPATH%() %CP%() app.Main", "unknown-function"},
        CommandMistake{JAVA "%cp%() %CP%() app.Main", "unknown-function"},
        CommandMistake{JAVA "%CP%() %SYSTEMPROP%(\"a\") app.Main", "argument-count"},
        CommandMistake{JAVA "%CP%() %LAUNCHER_DIR%(\"a\") app.Main", "argument-count"},
        CommandMistake{JAVA "%CP%() %SYSTEMPROP%('a','b') app.Main", "unquoted-argument"},
        CommandMistake{JAVA "%CP%() %SYSTEMPROP%(a,b) app.Main", "unquoted-argument"},
        CommandMistake{JAVA "%CP%() %RUNTIME_JAVAARGS% app.Main", "missing-parenthesis"},
        CommandMistake{JAVA "%CP%() app.Main %IF_EXISTS%(\"DESC\",\"b\"", "missing-parenthesis"},
        CommandMistake{JAVA "%CP%() %SYSTEMPROP%(\"a\",\"b) app.Main", "unclosed-quote"},
        CommandMistake{JAVA "%CP%() app.Main @JVM_VENDOR@", "unknown-jvm-tag"},
        CommandMistake{JAVA "%CP%() @REQ_JAVA_ARGS@ app.Main", ""},
        CommandMistake{JAVA "%CP%() %IF_EXISTS%(\"JVM_HOM\",\"b\") app.Main", "unknown-jvm-tag"},
        CommandMistake{"exec \"@JVM_HOME/@JVM_EXE@\" %CP%() app.Main", "lone-mark"},
        CommandMistake{JAVA "%CP%() app.Main someone@example", "lone-mark"},
        CommandMistake{JAVA "%CP%() app.Main #USER", "lone-mark"},
        CommandMistake{JAVA "%CP%() app.Main #USER#", ""},
        CommandMistake{JAVA "%CP%() app.Main # a comment", ""},
        CommandMistake{JAVA "%CP%() app.Main 100%", ""},
        CommandMistake{JAVA "%RUNTIME_JAVAARGS() %CP%() app.Main", "lone-mark"}));

INSTANTIATE_TEST_SUITE_P(
    Shell, CommandMistakes,
    testing::Values(CommandMistake{"exec @JVM_HOME@/@JVM_EXE@ %CP%() app.Main", "unquoted-path"},
                    CommandMistake{JAVA "%CP%() -Dx=%LAUNCHER_DIR%() app.Main", "unquoted-path"},
                    CommandMistake{JAVA "%CP%() \"-Dx=%LAUNCHER_DIR%()\" app.Main", ""},
                    CommandMistake{JAVA "%CP%() '-Dx=%LAUNCHER_DIR%()' app.Main", ""},
                    CommandMistake{JAVA "%CP%() app.Main #HOME#", "unquoted-path"},
                    CommandMistake{JAVA "\"%CP%()\" app.Main", "quoted-class-path"},
                    CommandMistake{JAVA "'%CP%()' app.Main", "quoted-class-path"},
                    CommandMistake{JAVA "%CP%() app.Main \"hello", "unclosed-shell-quote"},
                    CommandMistake{JAVA "%CP%() app.Main it's", "unclosed-shell-quote"},
                    CommandMistake{"exec \"$JAVA_HOME\"/@JVM_EXE@ %CP%() app.Main", ""}));

INSTANTIATE_TEST_SUITE_P(
    Programs, CommandMistakes,
    testing::Values(CommandMistake{"exec '@JVM_HOME@/@JVM_EXE@' %CP%() app.Main", ""},
                    CommandMistake{"exec \"'@JVM_HOME@/@JVM_EXE@'\" %CP%() app.Main",
                                   "bad-program"},
                    CommandMistake{"exec @JVM_EXE@ %CP%() app.Main", "bad-program"},
                    CommandMistake{"exec '@JVM_HOME@' %CP%() app.Main", "bad-program"},
                    CommandMistake{"exec '@JVM_HOME@@JVM_EXE@' %CP%() app.Main", "bad-program"},
                    CommandMistake{"exec '@JVM_HOME@\\@JVM_EXE@' %CP%() app.Main", "bad-program"},
                    CommandMistake{"exec '@JVM_HOME@/bin/javaw' %CP%() app.Main", "bad-program"},
                    CommandMistake{"A=1 exec '@JVM_HOME@' %CP%() app.Main", "bad-program"},
                    CommandMistake{"cd /tmp && exec '@JVM_HOME@/@JVM_EXE@' %CP%() app.Main", ""},
                    CommandMistake{JAVA "%CP%() app.Main > /dev/null 2>&1", ""},
                    CommandMistake{JAVA "%CP%() app.Main > /dev/null", ""},
                    CommandMistake{JAVA "%CP%() app.Main &", "lost-arguments"},
                    CommandMistake{JAVA "%CP%() app.Main && echo done", "lost-arguments"},
                    CommandMistake{JAVA "%CP%() app.Main | tee log", "lost-arguments"},
                    CommandMistake{JAVA "%CP%() app.Main; echo done", "lost-arguments"},
                    CommandMistake{JAVA "%CP%() app.Main %*", "lone-mark"},
                    CommandMistake{JAVA "%CP%() app.Main %1", "lone-mark"},
                    CommandMistake{JAVA "-cp %CP%() app.Main", "doubled-switch"}));

INSTANTIATE_TEST_SUITE_P(
    Classes, CommandMistakes,
    testing::Values(CommandMistake{JAVA "%CP%() Main", "missing-main-class"},
                    CommandMistake{JAVA "%CP%()", "missing-main-class"},
                    CommandMistake{JAVA "-Xmx64m %CP%() -ea", "missing-main-class"},
                    CommandMistake{JAVA "app.Main %CP%()", "missing-main-class"},
                    CommandMistake{JAVA "%CP%() app.Main.class", "missing-main-class"},
                    CommandMistake{JAVA "%CP%() app.main", "missing-main-class"},
                    CommandMistake{JAVA "%CP%() app.Main -cp x", ""},
                    CommandMistake{JAVA "%CP%() app/Main", ""},
                    CommandMistake{JAVA "-Xmx64m --add-modules a %CP%() app.Mian x",
                                   "missing-main-class"},
                    CommandMistake{JAVA "%CP%() $OPTIONS app.Mian", ""},
                    CommandMistake{JAVA "%CP%(\"lib/other.jar\") app.Mian", ""},
                    CommandMistake{JAVA "%CP%() @arguments", "lone-mark"}));

TEST_F(PackageFixture, FindsUtf16AndNothingBehindIt) {
  put(FileType::JvmFile, 17, "java.jvm",
      std::string("\xFF\xFE"
                  "D\0E\0S\0C\0",
                  10));
  EXPECT_EQ(found(), Places{"java.jvm:1 utf-16"});
}

TEST_F(PackageFixture, FindsABlockThatSwallowsTheNextTag) {
  change("java.jvm", "PLATFORM_HINT: JAVA_HOME", "PLATFORM_HINT:\n  JAVA_HOME");
  EXPECT_EQ(found(), Places{"java.jvm:5 missing-block-end"});
}

TEST_F(PackageFixture, FindsAMissingCommand) {
  command("AUTO_SET_WORKING_DIR: 0");
  EXPECT_EQ(found(), Places{"setup.launch:1 missing-tag"});
}

TEST_F(PackageFixture, FindsAnEndlessMacro) {
  change("java.jvm", "SEARCH_ALL: 0", "REQ_JAVA_ARGS: @REQ_JAVA_ARGS@");
  change("setup.launch", "%CP%()", "@REQ_JAVA_ARGS@ %CP%()");
  EXPECT_EQ(found(), Places{"setup.launch:3 endless-macro"});
}

TEST_F(PackageFixture, FindsAnUnknownTagWhereAJvmFileUsesIt) {
  change("java.jvm", "SEARCH_ALL: 0", "REQ_JAVA_ARGS: @VENDOR@");
  change("setup.launch", "%CP%()", "@REQ_JAVA_ARGS@ %CP%()");
  EXPECT_EQ(found(), Places{"java.jvm:4 unknown-jvm-tag"});
}

TEST_F(PackageFixture, AcceptsATagOfTheAuthorsOwnThatTheCommandUses) {
  change("java.jvm", "SEARCH_ALL: 0", "VENDOR: mine");
  change("setup.launch", "app.Main", "app.Main @VENDOR@");
  EXPECT_THAT(found(), IsEmpty());
}

TEST_F(PackageFixture, SuggestsTheNearestWord) {
  script("FINDJVM 1 1\nILAUNCH 0 0\n");
  EXPECT_THAT(texts(), testing::ElementsAre(testing::HasSubstr("did you mean \"FIND_JVM\"?")));
}

}  // namespace
}  // namespace vessant::test
