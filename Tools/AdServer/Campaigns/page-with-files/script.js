document.getElementById('line').textContent = 'Wind from the south-west, force four.';
