// Light or dark: as the system has it, until the button says otherwise. The choice is kept on this device.
const KEY = 'zelkovan-theme';

const stored = () => {
  try {
    return localStorage.getItem(KEY);
  } catch {
    return null; // not everywhere may a page keep things
  }
};

function keep(theme) {
  try {
    localStorage.setItem(KEY, theme);
  } catch {
    // It holds for this page, then.
  }
}

export function attachTheme(button) {
  const system = matchMedia('(prefers-color-scheme: dark)');
  const current = () => document.documentElement.dataset.theme ?? (system.matches ? 'dark' : 'light');
  const show = () => {
    const other = current() === 'dark' ? 'light' : 'dark';
    button.textContent = other === 'dark' ? '☾' : '☀';
    button.setAttribute('aria-label', `Change to ${other} colours`);
  };
  const chosen = stored();
  if (chosen === 'dark' || chosen === 'light') document.documentElement.dataset.theme = chosen;
  button.addEventListener('click', () => {
    document.documentElement.dataset.theme = current() === 'dark' ? 'light' : 'dark';
    keep(document.documentElement.dataset.theme);
    show();
  });
  system.addEventListener('change', show);
  show();
  button.hidden = false;
}
