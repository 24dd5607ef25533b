// The orders, with what a merchant does to them.
import {act, ask, byID, clockText, make, setOptions} from './dom.js';

const MOVES = ['ready', 'delayed', 'cancelled', 'gone'];

const eventText = event => {
  const {event: name, by, time, state, customer_state: customer, latitude, longitude} = event;
  const facts = latitude === undefined ? '' : ` at ${latitude.toFixed(5)}, ${longitude.toFixed(5)}`;
  const more = event.eta_seconds === undefined ? '' : `, expected in ${event.eta_seconds} s`;
  const rating = event.customer_rating_value === undefined ? '' : `, rated ${event.customer_rating_value}`;
  return `${clockText(time)} ${name.replace('_', ' ')} by the ${by}${facts}${more}${rating}: ${state}, customer ${customer}`;
};

export class OrdersPanel {
  constructor() {
    this.cards = new Map();
    act(byID('offer'), async () => {
      const form = byID('offer'), fields = [...new FormData(form)].filter(([, value]) => value);
      const data = Object.fromEntries(fields);
      await ask('POST', '/sandbox/orders', {...data, site_id: Number(data.site_id)});
      form.reset();
    });
  }

  setAll(orders, sites) {
    const open = [...this.cards].filter(([, card]) => card.details.open).map(([id]) => id);
    this.cards.clear();
    byID('order-list').replaceChildren();
    for (const order of orders) this.show(order);
    for (const id of open) if (this.cards.has(id)) this.cards.get(id).details.open = true;
    byID('no-orders').hidden = orders.length > 0;
    setOptions(byID('offer').elements.site_id, sites.map(site => [site.id, `${site.id} ${site.name}`]));
  }

  /** Shows the order as it is, with the event that led there if there was one. */
  show(order, event) {
    const card = this.cards.get(order.id) ?? this.add(order);
    card.state.textContent = order.state;
    card.customer.textContent = order.customer_state;
    card.facts.textContent = [
      order.customer_name, order.site_name, order.redemption_code && `code ${order.redemption_code}`,
      order.eta_at && `expected at ${clockText(order.eta_at)}`,
      order.customer_rating_value_string && `rated ${order.customer_rating_value_string}`,
    ].filter(Boolean).join(' · ');
    // Events come on the stream and in the list that was asked for meanwhile.
    if (event && card.details.open && !(event.id <= card.lastEvent)) this.addEvent(card, event);
  }

  add(order) {
    const id = order.id, state = make('span', {className: 'state'}), customer = make('span', {className: 'state'});
    const facts = make('div'), timeLine = make('ol');
    const details = make('details', {}, make('summary', {textContent: 'Time line'}), timeLine);
    const move = word => act(
        make('button', {type: 'button', textContent: word, ariaLabel: `Order ${id}: ${word}`}),
        () => ask('POST', `/sandbox/orders/${id}/${word}`));
    const minutes = make('input', {type: 'number', min: 0, max: 10080, value: 5, name: 'minutes',
                                   ariaLabel: `Order ${id}: minutes to arrival`});
    const estimate = act(make('form', {className: 'row'}, make('label', {}, 'Minutes ', minutes),
                              make('button', {textContent: 'eta', ariaLabel: `Order ${id}: eta`})),
                         () => ask('POST', `/sandbox/orders/${id}/eta`, {eta_seconds: Math.round(minutes.value * 60)}));
    const item = make('li', {}, make('h3', {textContent: `${id} ${order.display_name}`}),
                      make('div', {}, 'Order ', state, ', customer ', customer), facts,
                      make('div', {className: 'row'}, ...MOVES.map(move), estimate), details);
    item.dataset.order = id;
    byID('order-list').prepend(item);
    byID('no-orders').hidden = true;
    const card = {state, customer, facts, timeLine, details, lastEvent: 0};
    details.addEventListener('toggle', () => { if (details.open) this.loadEvents(id, card); });
    this.cards.set(id, card);
    return card;
  }

  async loadEvents(id, card) {
    card.lastEvent = Infinity;  // what comes meanwhile is in the list
    const events = await ask('GET', `/sandbox/orders/${id}/events`);
    card.timeLine.replaceChildren();
    card.lastEvent = 0;
    for (const event of events) this.addEvent(card, event);
  }

  addEvent(card, event) {
    card.lastEvent = event.id;
    card.timeLine.append(make('li', {textContent: eventText(event)}));
  }
}
