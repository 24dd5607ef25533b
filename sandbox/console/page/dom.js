// What every panel needs. Text from the service reaches the page as text only, never as markup.

export const byID = id => document.getElementById(id);

/** Makes an element with those properties and children; a text becomes text. */
export const make = (name, properties = {}, ...children) => {
  const element = Object.assign(document.createElement(name), properties);
  element.append(...children);
  return element;
};

/** Puts options in place of a choice's; each is [value, text]. The choice stays if it can. */
export const setOptions = (select, options) => {
  const chosen = select.value;
  select.replaceChildren(...options.map(([value, textContent]) => make('option', {value, textContent})));
  if (options.some(([value]) => String(value) === chosen)) select.value = chosen;
};

export const clockText = time => time.slice(11, 19);

const MASK = '••••••';
export const isShowingTokens = () => byID('show-tokens').checked;
export const masked = text => isShowingTokens() ? text : MASK;

/** A text as a key of JSON or not, with the text that is its value; the last one may be cut. */
const PAIR = /("[^"\\]*(?:\\.[^"\\]*)*")(?:(\s*:\s*)"[^"\\]*(?:\\.[^"\\]*)*(?:"|\\?$))?/gs;

const isTokenKey = key => {
  try {
    return /token$/i.test(JSON.parse(key));
  } catch {
    return false;
  }
};

/** JSON, whole or cut, with tokens masked unless they are to be shown; all else is as it came. */
export const maskedJSON = text => isShowingTokens() ? text : text.replace(
    PAIR, (pair, key, colon) => colon && isTokenKey(key) ? `${key}${colon}"${MASK}"` : pair);

/** JSON with each entry on a line of its own; its numbers and texts are as it came. */
const indented = json => {
  let depth = 0;
  const line = () => `\n${'  '.repeat(depth)}`;
  return json.replace(/"[^"\\]*(?:\\.[^"\\]*)*"|\s+|\[\s*\]|\{\s*\}|[[{\]},:]/g, part => {
    if (part[0] === '"') return part;
    if (!part.trim()) return '';
    if (part.length > 1) return part[0] + part.at(-1);
    if (part === ':') return ': ';
    if (part === ',') return part + line();
    depth += '[{'.includes(part) ? 1 : -1;
    return '[{'.includes(part) ? part + line() : line() + part;
  });
};

/** A body for people: JSON in lines, with tokens masked; other text in its own lines. */
export const prettyBody = text => {
  const shown = maskedJSON(text);
  try {
    JSON.parse(text);
  } catch {
    return shown;
  }
  return indented(shown);
};

/** Asks the service. Answers what "data" holds; throws what the service complains of. */
export const ask = async (method, path, data) => {
  const answer = await fetch(path, {
    method, ...(data === undefined ? {} : {body: JSON.stringify({data})}),
  });
  const text = await answer.text();
  const isJSON = answer.headers.get('Content-Type')?.startsWith('application/json');
  const body = text && isJSON ? JSON.parse(text) : {};
  if (answer.ok) return body.data;
  const complaints = Object.values(body.errors ?? {}).flat().join('. ');
  throw new Error(complaints || `The service answered ${answer.status}`);
};

/** What the elements that people act on tell of it. */
const ACTS = {FORM: 'submit', SELECT: 'change', DETAILS: 'toggle'};

/** Has what people do with the element (click, send, choose, open) do the action, and tells what fails. */
export const act = (element, action) => {
  element.addEventListener(ACTS[element.tagName] ?? 'click', async event => {
    event.preventDefault();
    byID('notice').textContent = '';
    try {
      await action(event);
    } catch (error) {
      byID('notice').textContent = error.message;
    }
  });
  return element;
};
