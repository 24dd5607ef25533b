// The requests of apps: the newest ones, each with headers and bodies on demand.
import {act, ask, byID, clockText, make, masked, maskedJSON, prettyBody} from './dom.js';

const MOST = 1000;
const SECRET = /^(authorization|app-token|cookie)$/i;
/** What curl puts into its requests by itself. */
const OWN = /^(host|content-length|connection|accept-encoding|transfer-encoding)$/i;

const shown = ({name, value}) => SECRET.test(name) ? masked(value) : value;
const quoted = text => `'${text.replaceAll("'", "'\\''")}'`;

const curlText = request => {
  const headers = request.headers.filter(({name}) => !OWN.test(name))
      .map(header => `-H ${quoted(`${header.name}: ${shown(header)}`)}`);
  const body = request.body && `--data-raw ${quoted(maskedJSON(request.body))}`;
  // With "-X HEAD" curl would wait for a body.
  const method = request.method === 'HEAD' ? ['-I'] : ['-X', request.method];
  return ['curl', ...method, ...headers, body, quoted(location.origin + request.path)].filter(Boolean).join(' ');
};

export class RequestsPanel {
  constructor() {
    this.rows = byID('request-rows');
    this.waiting = [];
    this.last = 0;
    act(byID('request-clear'), () => ask('DELETE', '/sandbox/requests'));
    byID('request-filter').addEventListener('input', () => {
      for (const row of this.rows.rows) this.filter(row);
      this.count();
    });
  }

  /** Shows these and no others. The rows that stay keep their details and the focus. */
  setAll(requests) {
    const keyOf = ({id, time}) => `${id} ${time}`, wanted = new Set(requests.map(keyOf)), kept = new Map();
    for (const row of [...this.rows.rows]) {
      const {request} = row;
      if (!wanted.has(keyOf(request))) row.remove();
      else if (!row.dataset.detail) kept.set(keyOf(request), row);
    }
    this.waiting = [];
    this.last = requests.at(-1)?.id ?? 0;
    let older = null;
    for (const request of requests) {
      const row = kept.get(keyOf(request)) ?? this.rows.insertBefore(this.rowOf(request), older);
      older = row;
    }
    this.count();
  }

  /** Has the request shown soon, together with others that come at once. */
  add(request) {
    if (request.id <= this.last) return;
    this.last = request.id;
    this.waiting.push(request);
    if (this.waiting.length > MOST) this.waiting.shift();
    this.timer ??= setTimeout(() => this.flush(), 100);
  }

  flush() {
    clearTimeout(this.timer);
    this.timer = undefined;
    this.rows.prepend(...this.waiting.reverse().map(request => this.rowOf(request)));
    this.waiting = [];
    const isOne = row => !row.dataset.detail;
    for (let extra = [...this.rows.rows].filter(isOne).length - MOST; extra > 0;) {
      if (isOne(this.rows.lastChild)) --extra;
      this.rows.lastChild.remove();
    }
    // A detail without its request says nothing.
    if (this.rows.firstChild?.dataset.detail) this.rows.firstChild.remove();
    this.count();
  }

  count() {
    const rows = [...this.rows.rows].filter(row => !row.dataset.detail);
    const visible = rows.filter(row => !row.hidden).length;
    byID('request-count').textContent = visible === rows.length ? `${visible}` : `${visible} of ${rows.length}`;
  }

  filter(row) {
    const wanted = byID('request-filter').value.toLowerCase();
    row.hidden = !row.dataset.detail && !row.textContent.toLowerCase().includes(wanted);
    if (row.dataset.detail) row.hidden = row.previousSibling?.hidden ?? true;
  }

  rowOf(request) {
    const {id, method, path, status, time, duration_ms: duration} = request;
    const button = make('button', {type: 'button', textContent: `${method} ${path}`, ariaExpanded: 'false'});
    const row = make('tr', {className: status >= 400 || status === 0 ? 'bad' : ''}, make('td', {textContent: clockText(time)}),
                     make('td', {className: 'wide'}, button), make('td', {textContent: status || 'no answer'}),
                     make('td', {textContent: `${duration.toFixed(1)} ms`}));
    row.dataset.request = id;
    row.request = request;
    act(button, async () => {
      if (row.nextSibling?.dataset.detail === String(id)) {
        row.nextSibling.remove();
        button.ariaExpanded = 'false';
        return;
      }
      const whole = await ask('GET', `/sandbox/requests/${id}`);
      if (row.nextSibling?.dataset.detail !== String(id)) row.after(this.detailOf(whole));
      button.ariaExpanded = 'true';
    });
    this.filter(row);
    return row;
  }

  detailOf(request) {
    const part = (title, text) => text ? [make('h3', {textContent: title}), make('pre', {textContent: text})] : [];
    const headers = request.headers.map(header => `${header.name}: ${shown(header)}`).join('\n');
    const curl = make('pre', {className: 'curl', textContent: curlText(request)}), status = make('span', {role: 'status'});
    const copy = act(make('button', {type: 'button', textContent: 'Copy as curl'}), async () => {
      try {
        await navigator.clipboard.writeText(curl.textContent);
        status.textContent = ' Copied';
      } catch {
        // Browsers have no clipboard for pages of other machines without TLS.
        getSelection().selectAllChildren(curl);
        status.textContent = ' Selected: copy it with the keyboard';
      }
    });
    const cell = make('td', {colSpan: 4, className: 'wide'}, ...part('Headers', headers),
                      ...part('Body', prettyBody(request.body)), ...part('Answer', prettyBody(request.answer)),
                      make('p', {className: 'row'}, copy, status), curl);
    const row = make('tr', {}, cell);
    row.dataset.detail = request.id;
    row.request = request;
    return row;
  }

  /** Shows the details again, for what is masked has changed. */
  showAgain() {
    for (const row of this.rows.querySelectorAll('tr[data-detail]')) row.replaceWith(this.detailOf(row.request));
  }
}
