// The link over the header, for those who go by keyboard. The fragment it names would push out what the address keeps.
export function attachSkip(link) {
  const content = document.querySelector(link.getAttribute('href'));
  link.addEventListener('click', (event) => {
    event.preventDefault();
    content.focus();
    content.scrollIntoView();
  });
}
