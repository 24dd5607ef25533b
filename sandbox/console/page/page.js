// The live console: lists first, then what the stream of events tells. Each "reload" of the stream,
// the first of each connection among them, means to read the lists afresh.
import {ask, byID} from './dom.js';
import {FaultsPanel} from './faults.js';
import {OrdersPanel} from './orders.js';
import {PushesPanel} from './pushes.js';
import {RequestsPanel} from './requests.js';
import {startStatePanel} from './state.js';
import {TrackingPanel} from './tracking.js';

const orders = new OrdersPanel(), tracking = new TrackingPanel(), requests = new RequestsPanel();
const faults = new FaultsPanel(), pushes = new PushesPanel();
startStatePanel();

const handlers = {
  request: request => requests.add(request),
  order: ({order, event}) => {
    orders.show(order, event);
    pushes.update(order);
    return tracking.update(order, event);
  },
  push: push => pushes.add(push),
  faults: () => faults.loadActive(),
  requests: () => requests.setAll([]),
};

const load = async () => {
  const [allOrders, sites, allRequests, allPushes] = await Promise.all(
      ['orders', 'sites', 'requests?summary', 'pushes'].map(name => ask('GET', `/sandbox/${name}`)));
  orders.setAll(allOrders, sites);
  requests.setAll(allRequests);
  pushes.setAll(allPushes, allOrders);
  await Promise.all([faults.load(), tracking.setAll(allOrders, sites)]);
};

// One event after the other, in the order in which they came.
let work = Promise.resolve();
const inTurn = (stream, action) => {
  work = work.then(() => stream === source ? action() : undefined).catch(error => {
    console.info(String(error));
  });
};

let source, timer;
const say = text => { byID('link').textContent = text; };

const disconnect = () => {
  clearTimeout(timer);
  source?.close();
  source = undefined;
};

const connect = () => {
  disconnect();
  const stream = source = new EventSource('/sandbox/events');
  const isGone = () => stream !== source;
  const comeBack = () => {
    say('Connection lost, trying again');
    disconnect();
    timer = setTimeout(connect, 1000);
  };
  stream.addEventListener('reload', () => inTurn(stream, async () => {
    try {
      await load();
      if (!isGone()) say('Live');
    } catch {
      if (!isGone()) comeBack();
    }
  }));
  for (const [name, handle] of Object.entries(handlers)) {
    stream.addEventListener(name, event => inTurn(stream, () => handle(JSON.parse(event.data))));
  }
  stream.addEventListener('error', () => {
    // A browser gives up for good on an answer other than the stream, as when too many wait.
    if (!isGone()) comeBack();
  });
};

// A browser has few connections to a service: a page that nobody sees takes none.
document.addEventListener('visibilitychange', () => {
  if (document.hidden) disconnect(); else connect();
});
byID('show-tokens').addEventListener('change', () => {
  requests.showAgain();
  pushes.showAgain();
});
if (!document.hidden) connect();
