// The map, with the customer of one order: the one that was chosen, or that has moved last.
import {act, byID, make, setOptions} from './dom.js';
import {MetreMap, distance} from './map.js';
import {TimeLine} from './timeline.js';

const LONGEST_TRAIL = 1000;
const placeOf = record => ({latitude: Number(record.latitude), longitude: Number(record.longitude), accuracy: record.accuracy});
/** A distance for people; one below 0 is not known. */
const metres = value => !(value >= 0) ? 'unknown' : value < 1000 ? `${Math.round(value)}\u00a0m` : `${(value / 1000).toFixed(2)}\u00a0km`;

export class TrackingPanel {
  constructor() {
    this.map = new MetreMap(byID('map'));
    this.map.onFollow = follow => byID('map-follow').setAttribute('aria-pressed', follow);
    act(byID('map-follow'), () => this.map.setFollow(!this.map.follow));
    act(byID('map-order'), () => {
      this.isChosen = true;
      return this.select(Number(byID('map-order').value));
    });
    this.forget();
  }

  /** Begins a trail without positions. */
  forget() {
    const trail = this.trail = [];
    this.timeLine = new TimeLine(() => { trail.length = 0; }, event => {
      if (event.latitude !== undefined) trail.push(placeOf(event));
      if (trail.length > LONGEST_TRAIL) trail.shift();
    });
  }

  async setAll(orders, sites) {
    this.orders = new Map(orders.map(order => [order.id, order]));
    this.sites = sites.filter(site => site.latitude && site.longitude).map(
        site => ({...placeOf(site), id: site.id, name: site.name, radius: site.geofence?.radius_meters}));
    this.listOrders();
    if (!this.orders.has(this.selected)) this.isChosen = false;
    const latest = orders.reduce((one, other) => !one || other.updated_at > one.updated_at ? other : one, undefined);
    await this.select(this.isChosen ? this.selected : latest?.id);
  }

  listOrders() {
    setOptions(byID('map-order'), [...this.orders.values()].map(order => [order.id, `${order.id} ${order.display_name}`]));
    if (this.selected) byID('map-order').value = this.selected;
  }

  async select(id) {
    if (id !== this.selected) {
      this.forget();
      this.map.forget();
    }
    this.selected = id;
    const timeLine = this.timeLine, order = this.orders.get(id), site = this.sites.find(one => one.id === order?.site_id) ?? this.sites[0];
    this.site = site;
    if (site) this.map.setSites(site, this.sites);
    if (order) {
      byID('map-order').value = id;
      await timeLine.load(id);
    }
    if (timeLine === this.timeLine) this.show();
  }

  async update(order, event) {
    const isNew = !this.orders.has(order.id);
    this.orders.set(order.id, order);
    if (isNew) this.listOrders();
    if (order.id !== this.selected) {
      if (!this.isChosen) await this.select(order.id);
      return;
    }
    this.timeLine.add(event);
    this.show();
  }

  show() {
    const order = this.orders.get(this.selected), device = order?.device ?? {}, facts = [];
    const last = this.trail.at(-1) ?? (device.latitude === undefined ? undefined : placeOf(device));
    const beacons = device.beacons ?? [];
    if (order) facts.push(['Order', `${order.state}, customer ${order.customer_state}`]);
    if (this.site) facts.push(['Site', `${this.site.name}${this.site.radius ? `, geofence ${metres(this.site.radius)}` : ''}`]);
    if (last && this.site) {
      facts.push(['Position', `${last.latitude.toFixed(5)}, ${last.longitude.toFixed(5)}${last.accuracy > 0 ? ` ± ${metres(last.accuracy)}` : ''}`],
                 ['Distance', metres(distance(last, this.site))]);
    }
    for (const {uuid, major, minor, rssi, distance: away} of beacons) {
      facts.push(['Beacon', `${uuid} ${major}/${minor}: ${Math.round(rssi)}\u00a0dBm, ${metres(away)}`]);
    }
    byID('map-facts').replaceChildren(...facts.flatMap(
        ([name, text]) => [make('dt', {textContent: name}), make('dd', {textContent: text})]));
    if (this.site) this.map.setDevice(this.trail.length ? this.trail : last ? [last] : [], beacons);
  }
}
