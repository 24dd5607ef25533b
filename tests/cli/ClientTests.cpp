#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sandbox/Sandbox.h"
#include "tests/cli/Shell.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta {
namespace {

/// Keeps what follows from the services of whoever runs the tests.
const std::string kNoBus = "export DBUS_S{YSTEM,ESSION}_BUS_ADDRESS=unix:path=/nowhere; ";

/// A line of shell, how it ends, and what stands in what it writes.
struct Call {
  std::string line;
  int exitCode;
  std::string output;
};

/// A sandbox and a data directory that all lines share, as those of one shell do: `ovinta` is the
/// command on both, `$home` a directory, `$service` the sandbox's address, `merchant` a request to
/// the sandbox's other side, `field` the text under a key of JSON.
class ClientTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(service_.start(), std::nullopt); }

  test::CommandResult run(const std::string& line) {
    const std::string prelude = R"bash(
ovinta() { $ovinta "$@" --data-dir $home/data --base-url "$service"; }
merchant() {
  exec 3<>/dev/tcp/127.0.0.1/${service##*:}
  printf '%s /sandbox/%s HTTP/1.0\r\nContent-Length: %s\r\n\r\n%s' $1 $2 ${#3} "$3" >&3
  cat <&3
}
field() { echo "$(sed -n "s/.*\"$1\":\"\([^\"]*\)\".*/\1/p")"; }
)bash";
    return test::shell("home=" + directory_.path().string() + " service=" + service_.baseURL() +
                       prelude + line);
  }

  void expect(const std::vector<Call>& calls) {
    for (const Call& call : calls) {
      const test::CommandResult result = run(call.line);
      EXPECT_EQ(result.exitCode, call.exitCode) << call.line << "\n" << result.output;
      EXPECT_THAT(result.output, testing::HasSubstr(call.output)) << call.line;
    }
  }

  sandbox::Sandbox service_;
  test::TemporaryDirectory directory_;
};

TEST_F(ClientTest, refusesWrongUsageEarly) {
  expect({
      {"ovinta orders event 1001 --customer-state gone", 2, "not in"},
      {"ovinta orders claim CODE --as-current", 2, "requires --name"},
      {"$ovinta doctor --position-source stars", 2, "not in"},
      {"$ovinta track --position-source gpsd", 2, "--live"},
      {kNoBus + "$ovinta doctor --position-source gpsd", 1, "gpsd cannot be used"},
      {kNoBus + "$ovinta doctor", 1, "missing  system bus          -        Could not connect"},
      {kNoBus + "$ovinta doctor --data-dir $home --json", 1, "[{\"advice\":\"Install and start"},
      {"ovinta customer login --email a@example.com --password - < /dev/null", 2, "no line for it"},
      {"ovinta orders rate 99999999999999999999 5", 2, "is no whole decimal number"},
      {"ovinta sites search --page 01", 2, "is no whole decimal number"},
      {"ovinta sites region --latitude nan --longitude 0 --radius 1", 2, "is no decimal number"},
      {"ovinta orders create --site 42 --partner-id P --pickup-in 9223372036854775807", 2, "range"},
      {"ovinta orders create --site 42 --partner-id P --pickup-in 1 --pickup-for -20", 2, "range"},
      {"ovinta notify arm 42 --simulate --data k", 2, "\"k\" is no KEY=VALUE"},
      {"ovinta customer create --name $'\\xff'", 2, "not UTF-8"},
      {"ovinta customer login --email a@b.c --passwrod hunter2", 2,
       "not expected: --passwrod (not"},
      {"for line in 'customer login --email a@b.c --passwrod=hunter2' 'orders rate --passwrd "
       "hunter2' 'orders rate --passwrd --hunter2' 'orders rate --passwrd -- --hunter2' 'orders "
       "fetch -p --hunter2 --json'"
       " 'customer login hunter2' 'orders fetch -p hunter2' 'orders fetch -phunter2'; do "
       "ovinta $line 2>&1; done | grep -c hunter2",
       1, "0"},
      {"ovinta ordres hunter2 2>&1", 2, "not expected: ordres (not shown)"},
      {"ovinta orders ftch", 2, "not expected: ftch"},
      {"ovinta config --base-url $'\\xe2\\x80\\xae'", 2, "\"\\u202e\" is no http"},
      {"ovinta track --trip $'\\xe2\\x80\\xae'", 1, "\\u202e"},
      {"$ovinta --version", 0, "ovinta 0."},
      {"ovinta track --trip $home/none", 1, "none"},
      {"ovinta track --live --trip " OVINTA_TRIPS "/drive.gpx", 2, "excludes"},
      {"service= ; ovinta config", 2, "\"\" is no http or https address"},
      {"service='http://a b'; ovinta config", 2, "is no http or https address"},
      {"ovinta config --data-dir ''", 2, "is empty"},
      {"mkdir -p $home/stuck/Settings.sqlite; $ovinta customer create --name Alex --data-dir "
       "$home/stuck --base-url $service",
       1, "does not keep"},
      {"rm -r $home/stuck/*; head -c 1000 /dev/zero > $home/stuck/VelkModel.sqlite; $ovinta doctor "
       "--data-dir $home/stuck",
       1, "VelkModel.sqlite: file is not a database"},
      {"$ovinta orders list --data-dir $home/stuck", 1,
       "No Orders: The order store cannot be read: file is not a database"},
      {"rm -r $home/stuck; $ovinta config --data-dir /dev/null/data", 1, "cannot be written to"},
      {"HOME=/dev/null XDG_DATA_HOME= $ovinta customer show", 1, "cannot be written to"},
      {"ls -A $home | wc -l", 0, "0\n"},
  });
}

TEST_F(ClientTest, takesAnOrderFromItsMakingToItsRating) {
  expect({
      {"ovinta orders list", 0, "(none)"},
      {"ovinta orders fetch", 1, "Error with Orders Manager: Could not load customer"},
      {"ovinta orders event 1001 --customer-state arrived", 3, "by design: there is no customer"},
      {"ovinta orders rate 1001 5 --json", 3, "\"description\":\"there is no customer"},
      {"ovinta orders create --site 7 --partner-id P --name Alex", 1, "status: 422"},
      {"ovinta orders create --site 42 --partner-id P --state delayed --pickup-in 20 --json", 0,
       "\"id\":1001"},
      {"echo device | ovinta orders fetch --push-token - --only open", 0,
       "ID    PARTNER ID  SITE  SITE NAME              STATE    CUSTOMER  CODE"},
      {"service=http://127.0.0.1:1; ovinta orders fetch", 1, "Error Getting Orders: "},
      {"ovinta orders event 1001 --customer-state arrived --json", 0,
       "{\"done\":\"The service has taken the event.\"}"},
      {"ovinta orders rate 1001 9 --json", 1, "\"status\":422"},
      {"ovinta orders rate 1001 5 --comment Quick", 0, "taken"},
      {"ovinta orders fetch --only closed", 0, "(none)"},
      {"ovinta orders fetch --json", 0, "\"customer_rating_value_string\":\"5\""},
      {"ovinta orders event 1001 --customer-state completed --verbose", 0,
       "Successfully created order event"},
      {"script -qec \"$ovinta track --data-dir $home/data\" /dev/null", 1,
       "Fetching the orders\r\x1b[K"},
      {"ovinta orders create --site 42 --partner-id $'a\\nb\\x1b[31m\\u009b' | grep Partner", 0,
       "a\\x0ab\\x1b[31m\\x9b\n"},
  });
}

TEST_F(ClientTest, keepsTheCustomerFromCallToCall) {
  expect({
      {"ovinta customer show", 1, "No Customer"},
      {"ovinta customer update --name Alex", 1, "Could not load customer"},
      {"ovinta customer update --name ''", 2, "is empty"},
      {"ovinta customer sign-up --email a@example.com --password secret", 1, "Could not load"},
      {"ovinta customer create --name Alex --no-terms", 1, "terms_of_service"},
      {"ovinta customer create --name Alex --phone 555", 0, "Registered  no"},
      {"ovinta customer update --car-type Van", 0, "Car         Van"},
      {"ovinta customer show", 0, "Name        Alex\nRegistered  no\nPhone       555\n"},
      {"echo secret | ovinta customer sign-up --email a@example.com --password - --json", 0,
       "\"registered\":true"},
      {"ovinta customer logout", 0, "No customer"},
      {"ovinta customer show --json", 1, "{\"error\":{\"description\":"},
      {"ovinta customer login --email a@example.com --password wrong", 1, "Error Signing In: "},
      {"export OVINTA_PASSWORD=secret; ovinta customer login --email a@example.com", 0, "Alex"},
      {"ovinta customer login-token nobodys", 1, "`ovinta customer logout`"},
      {"ovinta customer request-password --email a@example.com", 0, "on its way"},
      {"ovinta customer set-password --reset-token wrong --password another", 1, "is unknown"},
      {"merchant GET customers | field reset_password_token > $home/token", 0, ""},
      {"(cat $home/token; echo another) | ovinta customer set-password --reset-token - --password "
       "-",
       0, "Registered  yes"},
      {"ovinta customer login --email a@example.com --password another", 0, "Name        Alex"},
      {"merchant GET customers | field api_token > $home/token; ovinta customer logout", 0, ""},
      {"ovinta customer login-token - < $home/token", 0, "Name        Alex"},
      {"mkdir $home/data/Settings.sqlite-journal; ovinta customer logout", 1, "Not a regular file"},
      {"test -z \"$(ovinta customer logout 2>/dev/null)\"", 0, ""},
      {"rmdir $home/data/Settings.sqlite-journal; ovinta customer show", 0, "Name        Alex"},
      {"echo '$ovinta customer login --email a --password - <&0 & p=$!; until stty -a | grep -q "
       "\" -echo \"; do kill -0 $p || exit; done; kill $p; wait $p; stty -a' > $home/hidden; "
       "export ovinta; "
       "mkfifo $home/nobody; script -qec \"bash $home/hidden\" /dev/null <>$home/nobody",
       0, " echo "},
      {"printf 'token\\nanother\\nother\\n' | ovinta customer set-password --reset-token - "
       "--password - --confirmation -",
       1, "Confirmation is not the password"},
  });
}

TEST_F(ClientTest, findsSitesAndTheConfiguration) {
  expect({
      {"ovinta config", 0, "Ovinta sandbox"},
      {"ovinta config --json | grep -c '^{.*}$'", 0, "1"},
      {"service=http://127.0.0.1:1; ovinta config", 1, "Error Getting Configuration: "},
      {"ovinta sites search market", 0, "Page 1 of 2"},
      {"ovinta sites search --page 2 --json", 0, "{\"page\":2,\"pages\":2,\"sites\":[{"},
      {"test $(ovinta sites all 2>&1 | wc -l) -gt 11", 0, ""},
      // The progress is for terminals only.
      {"! ovinta sites all 2>&1 | grep 'Pages so far'", 0, ""},
      {"script -qec \"$ovinta sites all --data-dir $home/data\" /dev/null", 0, "Pages so far: 2"},
      {"service=http://127.0.0.1:1; ovinta sites all", 1, "Error Getting Sites: "},
      {"ovinta sites region --latitude 40.74 --longitude -73.99 --radius 500", 0, "150 m"},
      {"ovinta sites region --latitude 40.74 --longitude -73.99 --radius 9000 --per 2 --page 2 "
       "| wc -l",
       0, "3"},
  });
}

TEST_F(ClientTest, tellsOfTheServicesFaults) {
  const auto fault = [](const std::string& endpoint, const std::string& kind) {
    return Call{"merchant PUT faults/" + endpoint + " '{\"data\": {\"fault\": \"" + kind + "\"}}'",
                0, "200"};
  };
  expect({
      {"ovinta orders create --site 42 --partner-id P --name Alex", 0, "Order           1001"},
      fault("GET/m/v1/orders", "empty_body"),
      {"ovinta orders fetch --json", 1, "\"description\":\"invalid response\""},
      {"echo '{}' | ovinta push -", 1, "Error Getting Orders: invalid response"},
      {"ovinta track --pace 0", 1, "Error Getting Orders: invalid response"},
      {"ovinta orders list", 0, "(none)"},
      {"merchant DELETE faults", 0, "200"},
      fault("POST/m/v1/events", "status\", \"status\": 503, \"body\": \"try later"),
      {"ovinta orders rate 1001 5", 1, "Error Creating Order Event: Unknown Error"},
      {"ovinta track --pace 0 | tail -1; exit ${PIPESTATUS[0]}", 1, "Requests that failed: "},
      fault("POST/m/v1/events", "status\", \"status\": 503, \"count\": 3, \"body\": \"later"),
      {"ovinta track --pace 0 --deliver --json | tail -1", 0, "\"failed\":0"},
      {"ovinta track --pace 0 --deliver | tail -1", 0, " + waiting 0 + "},
  });
}

TEST_F(ClientTest, armsNotificationsThatATripFires) {
  const std::string circle = " --latitude 40.74 --longitude -73.99 --radius 3000";
  expect({
      {"ovinta notify list", 0, "(none)"},
      {"ovinta notify arm 42", 1, "Location permission is missing"},
      {"ovinta notify arm 42 43 44 45 46 47 --simulate", 1, "Site limit exceeded"},
      {"ovinta notify arm 42 7 --simulate", 1, "The service has no site 7."},
      {"service=http://127.0.0.1:1; ovinta notify arm 42 --simulate", 1, "Error Getting Sites: "},
      {"ovinta notify arm-region --simulate" + circle, 0, "Pier Row Market"},
      {"ovinta notify list | wc -l", 0, "5"},
      {"ovinta notify arm 42 43 --simulate --title Near --data key=value --data k=v=w", 0, "Armed"},
      {"ovinta notify list --json", 0,
       "\"data\":{\"k\":\"v=w\",\"key\":\"value\",\"message_source\":\"ovinta.notify\"}"},
      {"ovinta orders create --site 42 --partner-id P --name Alex", 0, "Order           1001"},
      {"ovinta track --pace 0 | grep -c 'shown *Near: Tell us'", 0, "1"},
      {"ovinta notify list", 0, "ovinta.notify 43"},
      {"! ovinta notify list | grep 'ovinta.notify 42'", 0, ""},
      {"ovinta notify clear", 0, "Nothing"},
      {"ovinta notify list", 0, "(none)"},
  });
}

TEST_F(ClientTest, findsAndClaimsWhatTheMerchantOffers) {
  const auto offer = [](const std::string& name) {
    return Call{
        "merchant POST orders '{\"data\": {\"site_id\": 42, \"partner_identifier\": \"P\"}}' "
        "| field redemption_code > $home/" +
            name,
        0, ""};
  };
  expect({
      offer("a"),
      offer("b"),
      offer("c"),
      {"ovinta orders find $(cat $home/a)", 0, "Order           1001"},
      {"ovinta orders find NONE", 1, "Error Finding Redeem Code: "},
      {"ovinta orders claim $(cat $home/a)", 1, "Could not load customer"},
      {"ovinta orders claim $(cat $home/a) --name Alex", 1, "Missing customer consent"},
      {"ovinta orders claim $(cat $home/a) --name Alex --consent --no-age", 1, "Could not load"},
      {"ovinta orders claim NONE --name Alex --consent", 1, "Error Claiming Order"},
      {"ovinta orders claim $(cat $home/a) --name Alex --push-token device --json", 0, "device"},
      {"ovinta orders claim $(cat $home/a) --name Alex", 0, "Order           1001"},
      {"merchant GET requests | grep -o 'push_token[^,]*'", 0, "null"},
      {"ovinta orders claim $(cat $home/b) --as-current --name Kim --pickup-type in_store", 0,
       "Customer        Kim"},
      {"ovinta orders fetch | wc -l", 0, "3"},
      {"merchant POST orders/1001/gone", 0, "200"},
      {"ovinta orders event 1001 --customer-state arrived", 3, "design: the service said"},
      {"ovinta orders claim $(cat $home/a)", 1, "410"},
      {"merchant PUT minimum-app-version/9.0", 0, ""},
      {"ovinta orders claim $(cat $home/c)", 1, "status: 425"},
      {"ovinta orders claim $(cat $home/c) --app-version 9.1", 0, "Order           1003"},
  });
}

TEST_F(ClientTest, appliesPushes) {
  expect({
      {"echo '{}' | ovinta push -", 1, "Could not load customer"},
      {"ovinta orders create --site 42 --partner-id P --name Alex --car-type Van --license-plate X",
       0, "Customer        Alex\nCar             Van, X\n"},
      {"echo '{\"order_id\": \"1001\", \"order_state\": \"ready\"}' > $home/push; ovinta push "
       "$home/push "
       "--json",
       0, "\"state\":\"ready\""},
      {"echo '{\"order_id\": \"7\"}' | ovinta push -", 0, "created"},
      {"echo '{\"order_id\": \"1001\", \"eta_at\": \"2030-01-02T03:04:05.000-0500\"}' | ovinta "
       "push -",
       0, "2030-01-02T08:04:05"},
      {"ovinta push $home/none --json", 1, "\"description\":\"cannot read"},
      {"ovinta push $home", 1, "cannot read"},
      {"echo '{' | ovinta push -", 1, "the payload is not JSON"},
      {"echo '[]' | ovinta push -", 1, "the payload is no JSON object"},
  });
}

TEST_F(ClientTest, followsOpenOrdersOnASimulatedTrip) {
  expect({
      {"ovinta orders create --site 43 --partner-id P --name $'A\\xe2\\x80\\xae\\x7f'", 0,
       "Customer        A\\u202e\\x7f"},
      {kNoBus + "$ovinta track --live --data-dir $home/data > $home/live & process=$!"
                "; for line in Waiting Following; do until grep -q $line $home/live; do kill -0 "
                "$process "
                "|| exit; done; done"
                "; kill -INT $process; wait $process",
       130, ""},
      {"tail -1 $home/live", 0, "Requests that failed: 0"},
      {"ovinta track --trip $ovinta --json", 1, "\"title\":\"No Trip\""},
      {"ovinta track --pace 0 --json > $home/track 2> $home/errors", 0, ""},
      {"head -2 $home/track | tail -1", 0, "Following 1 open order(s)"},
      {"grep '\"kind\":\"trip\"' $home/track", 0, "to site 43 of order 1001: "},
      {"grep -c '\"kind\":\"beacons\"' $home/track", 0, "1"},
      {"grep '\"kind\":\"position\"' $home/track | tail -1", 0,
       "\"accuracy\":\"best for navigation, 3 m\""},
      {"grep '2 beacon(s)' $home/track | head -1", 0, "location_update (2 beacon(s)) -> 200"},
      {"tail -1 $home/track", 0, "\"failed\":0"},
      // Standard error is no terminal here.
      {"test ! -s $home/errors", 0, ""},
      {"ovinta track --pace 0 --trip " OVINTA_TRIPS "/drive.gpx | grep 'trip  *ends 3[0-9]* m'", 0,
       " m from the nearest site"},
      // To a file of its own: of an old one the lines may be read before it begins anew.
      {"$ovinta track --pace 3600 --data-dir $home/data > $home/paced & process=$!"
       "; until grep -q Following $home/paced; do kill -0 $process || exit; done"
       "; kill -INT $process; wait $process",
       130, ""},
      {"merchant PUT faults/POST/m/v1/events '{\"data\": {\"fault\": \"never_answers\"}}'", 0,
       "200"},
      {"$ovinta track --pace 0 --data-dir $home/data > $home/held & process=$!"
       "; until grep -q accuracy $home/held; do kill -0 $process || exit; done; kill -INT $process"
       "; SECONDS=0; wait $process; (exit $(($? + ($SECONDS > 4))))",
       130, ""},
  });
}

TEST_F(ClientTest, tellsOfAWayThatIsNotToBeHad) {
  expect({
      {"merchant PUT snapshot '{\"data\": {\"sites\": [{\"id\": 1, \"name\": \"A\"}, {\"id\": 2, "
       "\"name\": \"B\", \"latitude\": \"40\", \"longitude\": \"-73\"}]}}'",
       0, "200"},
      {"ovinta orders create --site 2 --partner-id P --name Alex", 0, "Order           1001"},
      {"ovinta track --pace 0 | grep -o 'location_update -> 200' | head -1", 0, "200"},
      {"merchant POST orders/1001/gone; ovinta orders create --site 1 --partner-id P", 0, "1002"},
      {"ovinta track --pace 0", 1,
       "No Way to the Site: Order 1002 does not say where its site is: give a trip with --trip."},
  });
}

TEST_F(ClientTest, tellsOfSettingsThatAreNotKeptInTheEnd) {
  expect({
      {"merchant PUT faults/POST/m/v1/customer '{\"data\": {\"fault\": \"delay\", \"seconds\": "
       "3600}}'",
       0, "200"},
      {"export TMPDIR=$home/tmp; mkdir $TMPDIR; touch $home/demo"
       "; $ovinta demo --pace 0 --base-url $service > $home/demo 2>&1 & process=$!"
       "; until grep -q 'Create the customer' $home/demo; do kill -0 $process || exit; done"
       "; spoil $(echo $TMPDIR/*); merchant DELETE faults; wait $process",
       1, ""},
      {"tail -2 $home/demo", 0,
       "Every expected step was seen.\nCommand Failed: the data directory does not keep the "
       "settings"},
  });
}

}  // namespace
}  // namespace ovinta
