// The faults: a form with all that the service knows of them, and those in force.
import {act, ask, byID, make, setOptions} from './dom.js';

const WORDS = {count: 'The next n times', every: 'Every n-th request', probability: 'With probability',
  after: 'Sets in after seconds', for: 'Lasts for seconds'};

/** An endpoint for people: the one that stands for all of them is none by itself. */
const endpointText = ({method, path}) => method === 'ANY' ? 'all endpoints' : `${method} ${path}`;

const settingField = ({name, type, required}) => make('label', {}, `${WORDS[name] ?? name.replace('_', ' ')} `, make('input', {
  name, required, type: type === 'text' ? 'text' : 'number', step: type === 'number' ? 'any' : 1, size: 8,
}));

export class FaultsPanel {
  constructor() {
    byID('fault-kind').addEventListener('change', () => this.showSettings());
    act(byID('fault-clear-all'), () => ask('DELETE', '/sandbox/faults'));
    act(byID('fault-form'), () => {
      const record = {fault: byID('fault-kind').value};
      for (const input of byID('fault-settings').querySelectorAll('input')) {
        if (input.value) record[input.name] = input.type === 'number' ? Number(input.value) : input.value;
      }
      return ask('PUT', `/sandbox/faults/${byID('fault-endpoint').value}`, record);
    });
  }

  async load() {
    if (!this.table) await this.loadTable();
    await this.loadActive();
  }

  async loadTable() {
    const table = await ask('GET', '/sandbox/faults/kinds');
    this.table = table;
    setOptions(byID('fault-endpoint'), table.endpoints.map((endpoint) => [endpoint.method + endpoint.path, endpointText(endpoint)]));
    setOptions(byID('fault-kind'), table.kinds.map(({name}) => [name, name.replaceAll('_', ' ')]));
    this.showSettings();
  }

  showSettings() {
    const kind = this.table.kinds.find(({name}) => name === byID('fault-kind').value);
    byID('fault-settings').replaceChildren(...[...kind.settings, ...this.table.often].map(settingField));
  }

  /** Lists what is in force; of several calls at a time the last one counts. */
  async loadActive() {
    const call = this.call = {}, faults = await ask('GET', '/sandbox/faults');
    if (call !== this.call) return;
    byID('no-faults').hidden = faults.length > 0;
    byID('fault-list').replaceChildren(...faults.map(({method, path, fault, ...settings}) => {
      const endpoint = endpointText({method, path});
      const more = Object.entries(settings).map(([name, value]) => `${name} ${value}`).join(', ');
      const clear = act(make('button', {type: 'button', textContent: 'Clear', ariaLabel: `Clear ${fault} of ${endpoint}`}),
                        () => ask('DELETE', `/sandbox/faults/${method}${path}`));
      return make('li', {className: 'row'}, `${endpoint}: ${fault}${more ? `, ${more}` : ''} `, clear);
    }));
  }
}
