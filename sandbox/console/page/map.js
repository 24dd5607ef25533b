// A map without tiles: an SVG whose view box is in metres, north up, so that radii are metres. The
// plane around the origin is true for tens of kilometres.
const EARTH = 6371008.8, DEGREE = Math.PI / 180, SVG = 'http://www.w3.org/2000/svg';
const FARTHEST = 50000;
/** How many metres of the ground are seen at least where the map fits to what it shows. */
const LEAST_FIT = 800;

const draw = (parent, name, attributes = {}) => {
  const element = parent.appendChild(document.createElementNS(SVG, name));
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
  return element;
};

export const distance = (a, b) => {
  const half = (from, to) => Math.sin((to - from) * DEGREE / 2) ** 2;
  const chord = half(a.latitude, b.latitude) +
      Math.cos(a.latitude * DEGREE) * Math.cos(b.latitude * DEGREE) * half(a.longitude, b.longitude);
  return 2 * EARTH * Math.asin(Math.sqrt(chord));
};

export class MetreMap {
  constructor(box) {
    this.centre = {x: 0, y: 0};
    this.metres = 1500;
    this.follow = this.fits = true;
    this.glides = !matchMedia('(prefers-reduced-motion: reduce)').matches;
    this.svg = draw(box, 'svg', {role: 'application', tabindex: 0, 'aria-label':
        'Map. Arrow keys move it, plus and minus zoom. What it shows is told below it.'});
    this.grid = draw(this.svg, 'path', {class: 'grid'});
    this.fences = draw(this.svg, 'g');
    this.way = draw(this.svg, 'line', {class: 'way'});
    this.trail = draw(this.svg, 'polyline', {class: 'trail'});
    this.accuracy = draw(this.svg, 'circle', {class: 'accuracy', r: 0});
    this.beacons = draw(this.svg, 'g');
    this.names = draw(this.svg, 'g');
    this.dot = draw(this.svg, 'circle', {class: 'dot', r: 0});
    this.scale = draw(this.svg, 'text');
    this.labels = [];
    new ResizeObserver(() => {
      this.keepInView();
      this.show();
    }).observe(box);
    this.listen();
  }

  /** Shows the sites around the origin, each with its geofence; another origin is looked at. */
  setSites(origin, sites) {
    const isSame = ['latitude', 'longitude'].every(key => this.origin?.[key] === origin[key]);
    this.origin = origin;
    if (!isSame) this.forget();
    for (const part of [this.fences, this.names]) part.replaceChildren();
    this.labels = [];
    for (const site of sites.filter(one => distance(origin, one) < FARTHEST)) {
      const {x, y} = this.project(site);
      if (site.radius) draw(this.fences, 'circle', {class: 'fence', cx: x, cy: y, r: site.radius});
      const label = draw(this.names, 'g', {class: 'name'});
      draw(label, 'circle', {class: 'site', r: 4});
      draw(label, 'text', {x: 0, y: -14}).textContent = site.name;
      this.labels.push({label, x, y});
    }
    this.show();
  }

  /** Takes the customer away and looks at the origin. */
  forget() {
    this.centre = {x: 0, y: 0};
    this.setDevice([]);
    this.show();
  }

  /** Shows where a customer has been, {latitude, longitude, accuracy} each, and what it hears. */
  setDevice(positions, beacons = []) {
    const points = positions.map(position => this.project(position)), last = positions.at(-1);
    this.trail.setAttribute('points', points.map(({x, y}) => `${x.toFixed(1)},${y.toFixed(1)}`).join(' '));
    this.accuracy.setAttribute('r', Math.max(0, last?.accuracy ?? 0));
    this.beacons.replaceChildren();
    for (const {distance: away} of beacons.filter(beacon => beacon.distance >= 0)) {
      draw(this.beacons, 'circle', {class: 'beacon', r: Math.max(away, 1)});
    }
    this.to = points.at(-1);
    for (const part of [this.way, this.dot]) part.style.display = this.to ? '' : 'none';
    this.from = this.to && this.glides ? this.shown ?? this.to : this.to;
    this.since = performance.now();
    if (this.to) this.frame ??= requestAnimationFrame(time => this.step(time)); else this.shown = undefined;
  }

  /** Keeps the customer in view, and the origin as well until people zoom. */
  setFollow(follow) {
    this.follow = this.fits = follow;
    this.keepInView();
    this.show();
    this.onFollow?.(follow);
  }

  listen() {
    const on = (event, handle, options) => this.svg.addEventListener(event, handle, options);
    on('keydown', event => this.key(event));
    on('wheel', event => { event.preventDefault(); this.zoom(event.deltaY > 0 ? 1.2 : 1 / 1.2); }, {passive: false});
    on('pointerdown', event => { this.svg.setPointerCapture(event.pointerId); this.drag = event; });
    on('pointermove', event => {
      if (!this.drag) return;
      this.pan((this.drag.clientX - event.clientX) * this.perPixel, (this.drag.clientY - event.clientY) * this.perPixel);
      this.drag = event;
    });
    for (const end of ['pointerup', 'pointercancel']) on(end, () => { this.drag = undefined; });
  }

  project({latitude, longitude}) {
    return {x: (longitude - this.origin.longitude) * DEGREE * EARTH * Math.cos(this.origin.latitude * DEGREE),
            y: (this.origin.latitude - latitude) * DEGREE * EARTH};
  }

  /** Moves the marker a part of its way to where the customer is. */
  step(time) {
    this.frame = undefined;
    if (!this.to) return;
    const part = this.glides ? Math.max(0, Math.min(1, (time - this.since) / 300)) : 1;
    const between = key => this.from[key] + (this.to[key] - this.from[key]) * part;
    this.shown = {x: between('x'), y: between('y')};
    for (const circle of [this.dot, this.accuracy, ...this.beacons.children]) {
      circle.setAttribute('cx', this.shown.x);
      circle.setAttribute('cy', this.shown.y);
    }
    this.way.setAttribute('x1', this.shown.x);
    this.way.setAttribute('y1', this.shown.y);
    for (const key of ['x2', 'y2']) this.way.setAttribute(key, 0);
    if (part < 1) this.frame = requestAnimationFrame(next => this.step(next));
    if (this.follow) {
      this.keepInView();
      this.show();
    }
  }

  keepInView() {
    const {width, height} = this.svg.getBoundingClientRect();
    if (!this.follow || !this.shown || !width || !height) return;
    const {x, y} = this.shown, needed = 1.6 * Math.max(Math.abs(x), Math.abs(y) * width / height);
    const fits = this.fits && needed < 2 * FARTHEST;
    this.centre = fits ? {x: x / 2, y: y / 2} : this.shown;
    if (fits) this.metres = Math.max(LEAST_FIT, needed);
  }

  pan(x, y) {
    this.centre = {x: this.centre.x + x, y: this.centre.y + y};
    this.setFollow(false);
  }

  zoom(factor) {
    this.fits = false;
    this.metres = Math.min(2 * FARTHEST, Math.max(50, this.metres * factor));
    this.keepInView();
    this.show();
  }

  key(event) {
    const step = this.metres / 10;
    const move = {ArrowLeft: [-step, 0], ArrowRight: [step, 0], ArrowUp: [0, -step], ArrowDown: [0, step]}[event.key];
    if (move) this.pan(...move);
    else if (event.key === '+') this.zoom(1 / 1.5);
    else if (event.key === '-') this.zoom(1.5);
    else return;
    event.preventDefault();
  }

  /** Draws the part of the plane that is to be seen; nothing while the map has no size. */
  show() {
    const {width, height} = this.svg.getBoundingClientRect();
    if (!width || !height) return;
    const metres = this.metres, pixel = this.perPixel = metres / width, tall = height * pixel;
    const left = this.centre.x - metres / 2, top = this.centre.y - tall / 2;
    this.svg.setAttribute('viewBox', `${left} ${top} ${metres} ${tall}`);
    this.dot.setAttribute('r', 8 * pixel);
    for (const {label, x, y} of this.labels) label.setAttribute('transform', `translate(${x} ${y}) scale(${pixel})`);
    const power = 10 ** Math.floor(Math.log10(metres / 4));
    const step = [5, 2, 1].map(factor => factor * power).find(size => size <= metres / 4);
    let lines = '';
    for (let x = Math.ceil(left / step) * step; x < left + metres; x += step) lines += `M${x} ${top}v${tall}`;
    for (let y = Math.ceil(top / step) * step; y < top + tall; y += step) lines += `M${left} ${y}h${metres}`;
    this.grid.setAttribute('d', lines);
    this.scale.setAttribute('transform', `translate(${left + 8 * pixel} ${top + tall - 8 * pixel}) scale(${pixel})`);
    this.scale.textContent = step >= 1000 ? `Grid ${step / 1000} km` : `Grid ${step} m`;
  }
}
