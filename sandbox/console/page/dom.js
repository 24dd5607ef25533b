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

/** The value with tokens masked, whatever holds them, unless they are to be shown. */
export const maskedValue = value => {
  if (isShowingTokens() || value === null || typeof value !== 'object') return value;
  if (Array.isArray(value)) return value.map(maskedValue);
  return Object.fromEntries(Object.entries(value).map(
      ([key, entry]) => [key, /token$/i.test(key) && typeof entry === 'string' ? MASK : maskedValue(entry)]));
};

/** A body for people: JSON in lines, with tokens masked; other text as it is. */
export const prettyBody = text => {
  try {
    return JSON.stringify(maskedValue(JSON.parse(text)), null, 2);
  } catch {
    // What is no JSON, for it was cut, may hold tokens all the same.
    return isShowingTokens() ? text : text.replace(/(token"\s*:\s*")[^"]*/gi, `$1${MASK}`);
  }
};

/** Asks the service; tells people what it refuses, and throws then. Answers what "data" holds. */
export const ask = async (method, path, data) => {
  const answer = await fetch(path, {
    method, ...(data === undefined ? {} : {body: JSON.stringify({data})}),
  });
  const body = await answer.json();
  const complaints = Object.values(body.errors ?? {}).flat().join('. ');
  byID('notice').textContent = answer.ok ? '' : complaints || `The service answered ${answer.status}`;
  if (!answer.ok) throw new Error(byID('notice').textContent);
  return body.data;
};

/** Has a click, or a form that is sent, do the action; what fails was told already. */
export const act = (element, action) => {
  element.addEventListener(element instanceof HTMLFormElement ? 'submit' : 'click', async event => {
    event.preventDefault();
    try {
      await action(event);
    } catch (error) {
      byID('notice').textContent ||= String(error.message);
    }
  });
  return element;
};
