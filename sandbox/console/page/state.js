// Everything that the service knows, as one document.
import {act, ask, byID} from './dom.js';

const chosenDocument = async () => {
  const file = byID('snapshot-file').files[0];
  if (!file) throw new Error('Choose a file first');
  return JSON.parse(await file.text()).data;
};

export const startStatePanel = () => {
  act(byID('reset'), () => ask('POST', '/sandbox/reset'));
  act(byID('restore'), async () => ask('PUT', '/sandbox/snapshot', await chosenDocument()));
  act(byID('seed'), async () => ask('PUT', '/sandbox/seed', await chosenDocument()));
  act(byID('seed-now'), () => ask('POST', '/sandbox/seed'));
};
