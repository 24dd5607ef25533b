// The orders, with what a merchant does to them.
import {act, ask, byID, clockText, make, setOptions} from './dom.js';
import {TimeLine} from './timeline.js';

const MOVES = ['ready', 'delayed', 'cancelled', 'gone'];
/** The longest time to arrival that the service takes: a week. */
const MOST_MINUTES = 7 * 24 * 60;

/** What has happened, and the states after it unless they are those of the event before. */
const eventText = (event, before) => {
  const {event: name, by, time, state, customer_state: customer, latitude, longitude} = event;
  const facts = latitude === undefined ? '' : ` at ${latitude.toFixed(5)}, ${longitude.toFixed(5)}`;
  const more = event.eta_seconds === undefined ? '' : `, expected in ${event.eta_seconds} s`;
  const rating = event.customer_rating_value === undefined ? '' : `, rated ${event.customer_rating_value}`;
  const isSame = before?.state === state && before.customer_state === customer;
  const states = isSame ? '' : `: ${state}, customer ${customer}`;
  return `${clockText(time)} ${name.replace('_', ' ')} by the ${by}${facts}${more}${rating}${states}`;
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

  /** Shows these and no others. What is opened, typed or focused in a card stays. */
  setAll(orders, sites) {
    const ids = new Set(orders.map(({id}) => id));
    for (const [id, card] of this.cards) {
      if (!ids.has(id)) {
        card.item.remove();
        this.cards.delete(id);
      } else if (card.details.open) {
        card.timeLine.load(id).catch(error => console.info(String(error)));
      }
    }
    for (const order of orders) this.show(order);
    byID('no-orders').hidden = orders.length > 0;
    setOptions(byID('offer').elements.site_id, sites.map(site => [site.id, `${site.id} ${site.name}`]));
  }

  /** Shows the order as it is, with the event that led there if there was one. */
  show(order, event) {
    const card = this.cards.get(order.id) ?? this.add(order);
    card.title.textContent = `${order.id} ${order.display_name}`;
    card.state.textContent = order.state;
    card.customer.textContent = order.customer_state;
    card.facts.textContent = [
      order.customer_name, order.site_name, order.redemption_code && `code ${order.redemption_code}`,
      order.eta_at && `expected at ${clockText(order.eta_at)}`,
      order.customer_rating_value_string && `rated ${order.customer_rating_value_string}`,
    ].filter(Boolean).join(' · ');
    if (event && card.details.open) card.timeLine.add(event);
  }

  add(order) {
    const id = order.id, state = make('span', {className: 'state'}), customer = make('span', {className: 'state'});
    const facts = make('div'), title = make('h3'), list = make('ol', {reversed: true});
    let before;
    const timeLine = new TimeLine(() => {
      list.replaceChildren();
      before = undefined;
    }, event => {
      list.prepend(make('li', {textContent: eventText(event, before)}));
      before = event;
    });
    const details = make('details', {}, make('summary', {textContent: 'Time line'}), list);
    act(details, () => details.open ? timeLine.load(id) : undefined);
    const move = word => act(
        make('button', {type: 'button', textContent: word, ariaLabel: `Order ${id}: ${word}`}),
        () => ask('POST', `/sandbox/orders/${id}/${word}`));
    const minutes = make('input', {type: 'number', min: 0, max: MOST_MINUTES, value: 5, name: 'minutes', required: true,
                                   ariaLabel: `Order ${id}: minutes to arrival`});
    const estimate = act(make('form', {className: 'row'}, make('label', {}, 'Minutes ', minutes),
                              make('button', {textContent: 'eta', ariaLabel: `Order ${id}: eta`})),
                         () => ask('POST', `/sandbox/orders/${id}/eta`, {eta_seconds: Math.round(minutes.value * 60)}));
    const item = make('li', {}, title, make('div', {}, 'Order ', state, ', customer ', customer), facts,
                      make('div', {className: 'row'}, ...MOVES.map(move), estimate), details);
    item.dataset.order = id;
    const older = [...byID('order-list').children].find(other => other.dataset.order < id);
    byID('order-list').insertBefore(item, older ?? null);
    byID('no-orders').hidden = true;
    const card = {item, title, state, customer, facts, timeLine, details};
    this.cards.set(id, card);
    return card;
  }
}
