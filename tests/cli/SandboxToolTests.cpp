#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/Shell.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta {
namespace {

/// Runs a script with `ovinta` in a sandbox of its own; `$home` is a directory, `until FILE TEXT`
/// returns when the text stands in the file, which `$process` writes and may be yet to make.
test::CommandResult inSandbox(const std::string& options, const std::string& script) {
  const test::TemporaryDirectory directory;
  return test::shell("export ovinta home=" + directory.path().string() + "; $ovinta sandbox " +
                     options + R"bash( exec -- bash -c '
ovinta() { $ovinta "$@"; }
until_() { until grep -qs -- "$2" $1; do kill -0 $process || exit; done; }
)bash" + script + "'");
}

struct Call {
  std::string line;
  int exitCode;
  std::string output;
};

TEST(SandboxTool, playsTheMerchant) {
  const auto result = inSandbox("", R"bash(
ovinta orders create --site 42 --partner-id P --name Alex --push-token phone > /dev/null
ovinta merchant eta 1001 5
ovinta merchant delay 1001
ovinta merchant ready 1001 --json | grep -o "\"state\":\"ready\""
ovinta merchant gone 7; echo exit $?
ovinta merchant cancel 1001
ovinta merchant ready 1001 2>&1 | cut -c 1-43
ovinta merchant orders | cut -c 1-33
ovinta merchant offer --site 43 --partner-id Q | cut -c 1-40
ovinta --json sandbox pushes | grep -o "\"push_token\":\"phone\"" | wc -l
)bash");
  EXPECT_EQ(result.output,
            "Order 1001: the customer is expected in 5 min.\n"
            "Order 1001 is delayed.\n"
            "\"state\":\"ready\"\n"
            "Command Failed: the service answered 404: Order is unknown\nexit 1\n"
            "Order 1001 is cancelled.\n"
            "Command Failed: the service answered 409: S\n"
            "ID    PARTNER ID  SITE  STATE    \n1001  P           42    cancelled\n"
            "An order waits to be claimed by the code\n"
            "4\n");
}

TEST(SandboxTool, showsAndChangesWhatASandboxDoes) {
  const auto result = inSandbox("", R"bash(
ovinta orders create --site 42 --partner-id P --name Alex --push-token phone > /dev/null
ovinta sandbox snapshot $home/state; stat -c %a $home/state
ovinta sandbox faults add GET /m/v1/orders status --status 503 --count 2
ovinta sandbox faults add GET /m/v1/orders status 2>&1 | grep -o "answered 422"
ovinta sandbox faults list | cut -c 1-38
ovinta orders fetch 2>&1 | head -1
ovinta sandbox faults clear
ovinta sandbox faults add ANY /ANY reset --after 60 --for 120
ovinta sandbox faults list | tail -1 | sed -E "s/[0-9.]+ s/N/g; s/ +/ /g"
ovinta sandbox faults clear ANY /ANY
ovinta sandbox requests | grep -c "GET     503"
echo "{\"order_id\": \"1001\", \"order_state\": \"ready\"}" | ovinta sandbox send-push phone -
ovinta sandbox pushes --json | grep -o "\"payload\":{[^}]*}"
ovinta sandbox reset; ovinta merchant orders
ovinta sandbox seed $home/state; ovinta sandbox reset; ovinta merchant orders | wc -l
echo "{}" | ovinta sandbox restore -; echo exit $?
)bash");
  EXPECT_EQ(result.output.substr(0, result.output.find("The snapshot")), "");
  for (const char* part :
       {"/state.\n600\nGET /m/v1/orders misbehaves: status.\nanswered 422\n",
        "METHOD  PATH          FAULT   COUNT  E\nGET     /m/v1/orders  status  2      -",
        "\nError Getting Orders: ",
        "\n(none)\nAll endpoints misbehave: reset.\n"
        "ANY /ANY reset - - - N N\n(none)\n1\nThe push is sent",
        "The push is sent to "
        "phone.\n\"payload\":{\"order_id\":\"1001\",\"order_state\":\"ready\"}\n",
        "The sandbox is as at its start.\n(none)\n",
        "The sandbox starts with the snapshot.\nThe sandbox is as at its start.\n2\n",
        "the snapshot has nothing under \"data\"\nexit 1\n"}) {
    EXPECT_THAT(result.output, testing::HasSubstr(part));
  }
}

TEST(SandboxTool, followsRequestsAndPushesAndAppliesThem) {
  const auto result = inSandbox("", R"bash(
ovinta orders create --site 42 --partner-id P --name Alex > /dev/null
$ovinta sandbox requests --follow > $home/requests & followers=$!
$ovinta sandbox pushes --follow --json > $home/pushes & followers+=" $!"
$ovinta orders watch > $home/watch & process=$!
until_ $home/watch Following
until [ "$($ovinta sandbox snapshot | grep -c push_token...ovinta-)" = 1 ]; do kill -0 $process || exit; done
ovinta merchant ready 1001
until_ $home/watch "notified .*order ready"
ovinta merchant cancel 1001; wait $process; echo exit $?
until_ $home/pushes cancelled; until_ $home/requests "GET /m/v1/orders"
kill $followers; wait $followers 2> /dev/null
)bash");
  EXPECT_EQ(result.output, "Order 1001 is ready.\nOrder 1001 is cancelled.\nexit 0\n");
}

TEST(SandboxTool, hasATripTakeThePushes) {
  const auto result = inSandbox("", R"bash(
ovinta orders create --site 42 --partner-id P --name Alex --push-token phone > /dev/null
$ovinta track --pace 300 > $home/track & process=$!
until_ $home/track accuracy
ovinta merchant cancel 1001; wait $process; echo exit $?
grep -c "push  .*cancelled" $home/track
)bash");
  EXPECT_EQ(result.output, "Order 1001 is cancelled.\nexit 0\n1\n");
}

TEST(SandboxTool, showsOnATerminalWhatItWaitsFor) {
  const auto result = inSandbox("", R"bash(
ovinta orders create --site 42 --partner-id P --name Alex > /dev/null
ovinta sandbox faults add GET /m/v1/orders never_answers > /dev/null
script -qefc "$ovinta orders fetch" $home/terminal > /dev/null & process=$!
until_ $home/terminal "Waiting for the service, 1 s"
ovinta sandbox faults clear; wait $process
ovinta sandbox faults add GET /m/v1/orders wrong_types > /dev/null
ovinta orders fetch
)bash");
  EXPECT_THAT(result.output, testing::StartsWith("(none)\n"));
  EXPECT_THAT(result.output,
              testing::ContainsRegex(
                  "Error Getting Orders: invalid response\nreason: type mismatch.*data"));
}

TEST(SandboxTool, isAskedForItsTokenWhereOthersCanReachIt) {
  const auto refused = test::shell("$ovinta sandbox --host 0.0.0.0 < /dev/null");
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.output, testing::HasSubstr("takes an app token"));
  const auto result = inSandbox("--host 0.0.0.0 --app-token T --verbose", R"bash(
ovinta merchant orders --token S; ovinta merchant orders
exec 3<>/dev/tcp/127.0.0.1/${OVINTA_BASE_URL##*:}
printf "GET /sandbox/sites HTTP/1.0\r\nHost: example.com\r\nAuthorization: Basic c2FuZGJveDpU\r\n\r\n" >&3
head -1 <&3
)bash");
  for (const char* part :
       {"401  GET /sandbox/orders  ", "Command Failed: the service answered 401\n",
        "200  GET /sandbox/orders  ", "(none)\n", "HTTP/1.1 200 OK"}) {
    EXPECT_THAT(result.output, testing::HasSubstr(part));
  }
}

TEST(SandboxTool, endsWhenTheSandboxDoes) {
  const test::TemporaryDirectory directory;
  const auto result = test::shell("home=" + directory.path().string() + R"bash(
export OVINTA_DATA_DIR=$home/data
$ovinta sandbox > $home/address & sandbox=$!
until address=$(grep -s http $home/address); do kill -0 $sandbox || exit; done
export OVINTA_BASE_URL=$address
$ovinta orders create --site 42 --partner-id P --name Alex > /dev/null
$ovinta orders watch > $home/watch 2>&1 & process=$!
$ovinta sandbox requests --follow > /dev/null 2>&1 & follower=$!
until grep -qs Following $home/watch; do kill -0 $process || exit; done
kill $sandbox; wait $process; echo $?; wait $follower; echo $?
grep -o "^No Pushes: the s" $home/watch
)bash");
  EXPECT_EQ(result.output, "1\n1\nNo Pushes: the s\n");
}

TEST(SandboxTool, endsItsCommandWhenInterrupted) {
  const test::TemporaryDirectory directory;
  const auto result = test::shell("home=" + directory.path().string() + R"bash(
for signal in INT TERM; do
  $ovinta sandbox exec -- sh -c 'echo $$; exec sleep 600' > $home/$signal & process=$!
  until child=$(grep -s . $home/$signal); do kill -0 $process || exit; done
  kill -$signal $process; wait $process; echo $?; kill -0 $child 2> /dev/null && echo runs
done
)bash");
  EXPECT_EQ(result.output, "130\n143\n");
}

TEST(SandboxTool, setsTheClockAndShowsARequest) {
  const auto result = inSandbox("", R"bash(
ovinta sandbox clock set 2030-05-01T11:55:00.000Z | grep -o "now.*2030-05-01T11:55"
ovinta sandbox clock advance 600 --json | grep -o "2030-05-01T12:05"
ovinta sandbox clock reset --json | grep -o "ahead_seconds..0"
ovinta orders create --site 42 --partner-id P --name Alex > /dev/null
ovinta sandbox requests 2 --json | grep -o "\"method\":\"[A-Z]*\""
ovinta sandbox requests 2 --follow; echo exit $?
)bash");
  EXPECT_THAT(result.output, testing::ContainsRegex("now: 2030-05-01T11:55\n2030-05-01T12:05\n"
                                                    "ahead_seconds.:0\n.method.:.POST.\n"));
  EXPECT_THAT(result.output, testing::EndsWith("exit 2\n"));
}

TEST(SandboxTool, runsACommandWithASandboxOfItsOwn) {
  const Call calls[] = {
      {"$ovinta sandbox exec -- sh -c 'exit 7'", 7, ""},
      {"$ovinta sandbox exec -- sh -c 'echo ${OVINTA_BASE_URL%:*}; test ! -e $OVINTA_DATA_DIR'", 0,
       "http://127.0.0.1\n"},
      {"$ovinta sandbox exec", 2, "command is required\nRun with --help for more information.\n"},
      {"$ovinta sandbox exec -- /nowhere 2>/dev/null", 127, ""},
      {"OVINTA_BASE_URL=x OVINTA_TOKEN=- $ovinta sandbox exec -- cat <<< kept", 0, "kept\n"},
      {"$ovinta sandbox --app-token T exec -- $ovinta merchant orders", 0, "(none)\n"},
      {"$ovinta sandbox --snapshot-file /dev/stdout exec -- true | cut -c 1-9", 0, "{\"data\":{\n"},
      {"$ovinta --json sandbox --seed-file /nowhere exec -- true", 1,
       "{\"error\":{\"description\":\"/nowhere cannot be read\",\"title\":\"Command Failed\"}}\n"},
      {"$ovinta sandbox --port 1 exec -- true 2>&1 | head -1", 0,
       "--port: is not for \"sandbox exec\"\n"},
      {"$ovinta sandbox --app-token T requests 2>&1 | head -1", 0,
       "--app-token: is not for \"sandbox requests\"\n"},
      {"$ovinta sandbox --host ::1 2>&1 | head -1", 0,
       "--host: \"::1\" is no IPv4 address, nor \"localhost\"\n"},
  };
  for (const auto& [line, exitCode, output] : calls) {
    const auto result = test::shell(line);
    EXPECT_EQ(result.exitCode, exitCode) << line;
    EXPECT_EQ(result.output, output) << line;
  }
}

}  // namespace
}  // namespace ovinta
