// The pushes that were sent, and a form to send one.
import {act, ask, byID, clockText, isShowingTokens, make, masked, prettyBody, setOptions} from './dom.js';

const MOST = 200;

export class PushesPanel {
  constructor() {
    this.orders = new Map();
    this.pushes = [];
    byID('push-order').addEventListener('change', () => this.fill());
    act(byID('push-form'), () => ask('POST', '/sandbox/pushes', {
      push_token: byID('push-token').value, payload: JSON.parse(byID('push-payload').value),
    }));
  }

  setAll(pushes, orders) {
    this.orders = new Map(orders.map(order => [order.id, order]));
    this.pushes = [];
    byID('push-list').replaceChildren();
    byID('no-pushes').hidden = pushes.length > 0;
    for (const push of pushes) this.add(push);
    this.listOrders();
  }

  update(order) {
    const isKnown = this.orders.get(order.id)?.push_token === order.push_token;
    this.orders.set(order.id, order);
    if (!isKnown) this.listOrders();
  }

  listOrders() {
    const reachable = [...this.orders.values()].filter(order => order.push_token);
    setOptions(byID('push-order'), [['', 'none'], ...reachable.map(order => [order.id, `${order.id} ${order.display_name}`])]);
  }

  /** Fills the form with what the service would send of the order. */
  fill() {
    const order = this.orders.get(Number(byID('push-order').value));
    if (!order) return;
    byID('push-token').value = order.push_token;
    byID('push-payload').value = JSON.stringify(
        {order_id: String(order.id), order_state: order.state, customer_state: order.customer_state});
  }

  add(push) {
    if (push.id <= (this.pushes[0]?.id ?? 0)) return;
    this.pushes.unshift(push);
    byID('no-pushes').hidden = true;
    byID('push-list').prepend(this.itemOf(push));
    if (this.pushes.length > MOST) {
      this.pushes.pop();
      byID('push-list').lastChild.remove();
    }
  }

  itemOf({time, push_token: token, payload, listeners}) {
    const heard = listeners ? `${listeners} listening` : 'waits for a listener';
    const line = prettyBody(JSON.stringify(payload)).replace(/\n\s*/g, ' ');
    return make('li', {}, `${clockText(time)} to ${masked(token)}, ${heard}: `, make('code', {textContent: line}));
  }

  showAgain() {
    byID('push-token').type = isShowingTokens() ? 'text' : 'password';
    byID('push-list').replaceChildren(...this.pushes.map(push => this.itemOf(push)));
  }
}
