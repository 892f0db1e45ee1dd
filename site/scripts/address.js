// What stands in the fields, kept in the fragment of the page's address: it can be shared, works from the disk, and is sent
// to no server.

/** "rate=0.005&nper=360" as texts by name. */
export const readFragment = (fragment) => Object.fromEntries(new URLSearchParams(fragment.replace(/^#/, '')));

/** Texts by name, those that say what stands there anyway left out. */
export function fragmentOf(texts, usual = {}) {
  const said = Object.entries(texts).filter(([name, text]) => text !== (usual[name] ?? ''));
  return said.map(([name, text]) => `${encodeURIComponent(name)}=${encodeURIComponent(text).replace(/%2C/g, ',').replace(/%2F/g, '/')}`).join('&');
}

/** The fragment of a page that is one calculation. */
export const ownAddress = {
  read: () => readFragment(location.hash),
  write: (texts, usual) => replace(fragmentOf(texts, usual)),
};

/** The fragment of a page of all calculations: "#PRICE?rate=0.05". */
export const addressBelow = (name) => ({
  read: () => readFragment(location.hash.split('?')[1] ?? ''),
  write: (texts, usual) => {
    const said = fragmentOf(texts, usual);
    replace(said === '' ? name : `${name}?${said}`);
  },
});

function replace(fragment) {
  history.replaceState(null, '', fragment === '' ? location.pathname + location.search : `#${fragment}`);
}
