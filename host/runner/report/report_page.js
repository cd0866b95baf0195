// Shows the reason of the staff-measure that is pointed at or tapped under its grid.
for (const grid of document.querySelectorAll('.grid')) {
  const told = grid.nextElementSibling;
  const show = event => {
    const cell = event.target.closest('td[title]');
    if (!cell) return;
    grid.querySelector('.chosen')?.classList.remove('chosen');
    cell.classList.add('chosen');
    const column = grid.querySelectorAll('thead th')[cell.cellIndex];
    told.textContent = `${column.title}, ${cell.parentElement.cells[0].textContent} \u2013 ${cell.title}`;
  };
  grid.addEventListener('click', show);
  grid.addEventListener('mouseover', show);
}
