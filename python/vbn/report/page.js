'use strict';
for (const table of document.querySelectorAll('table.sorts')) {
  const headings = [...table.tHead.rows[0].cells];
  const body = table.tBodies[0];
  const valueOf = (row, column) => {
    const data = row.cells[column].querySelector('data');
    return data ? Number(data.value) : row.cells[column].textContent;
  };
  headings.forEach((heading, column) => {
    const button = document.createElement('button');
    button.type = 'button';
    button.append(...heading.childNodes);
    heading.append(button);
    button.addEventListener('click', () => {
      const text = heading.classList.contains('text');
      const down = heading.getAttribute('aria-sort') === null ? !text : heading.getAttribute('aria-sort') === 'ascending';
      for (const each of headings) each.removeAttribute('aria-sort');
      heading.setAttribute('aria-sort', down ? 'descending' : 'ascending');
      const order = [...body.rows].sort((a, b) => {
        const x = valueOf(a, column), y = valueOf(b, column);
        return (x < y ? -1 : x > y ? 1 : 0) * (down ? -1 : 1);
      });
      body.append(...order);
    });
  });
}
const drawings = [...document.querySelectorAll('svg.moving')];
const button = document.getElementById('motion');
const move = (moving) => {
  for (const drawing of drawings) moving ? drawing.unpauseAnimations() : drawing.pauseAnimations();
  button.textContent = moving ? 'Stop the motion' : 'Show the motion';
};
let moving = !matchMedia('(prefers-reduced-motion: reduce)').matches;
button.hidden = false;
button.addEventListener('click', () => move(moving = !moving));
move(moving);
