// Elements that scripts add to a page.

/** A new last child. @returns {HTMLElement} */
export function part(parent, element, { text = '', name = '' } = {}) {
  const made = document.createElement(element);
  made.textContent = text;
  if (name !== '') made.className = name;
  parent.append(made);
  return made;
}

/** A button that copies a text. @param {string} said on it */
export function copyButton(parent, said, text) {
  const button = part(parent, 'button', { text: said });
  button.type = 'button';
  button.addEventListener('click', () => copyText(text(), button));
  return button;
}

export async function copyText(text, button) {
  const said = button.textContent;
  try {
    await navigator.clipboard.writeText(text);
    button.textContent = 'Copied';
  } catch {
    button.textContent = 'Not allowed here';
  }
  setTimeout(() => (button.textContent = said), 1500);
}
