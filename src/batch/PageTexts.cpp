#include "batch/PageTexts.h"

const char* const kPageStart = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>qsbatch</title>
<meta name="viewport" content="width=device-width">
<style>
body{font:14px/1.4 sans-serif;margin:1em;background:#f4f4f4;color:#222}
form{position:sticky;top:0;background:#f4f4f4;padding:.5em 0}
main{display:grid;grid-template-columns:repeat(auto-fill,minmax(220px,1fr));gap:1em}
article{background:#fff;border:1px solid #ccc;border-radius:4px;padding:.6em;overflow-wrap:anywhere}
article[hidden]{display:none}
article img,.none{width:160px;height:120px;object-fit:contain;background:#222;color:#aaa;display:block}
.none{display:flex;align-items:center;justify-content:center;text-align:center;font-size:12px}
h2{font-size:14px;margin:.5em 0}p,ul{margin:.3em 0}ul{padding-left:1.1em;font-size:12px}
.converted,.up-to-date{color:#060}.skipped{color:#555}
.failed,.crashed,.timed-out,.out-of-memory,.error{color:#a00}.warning{color:#840}.note{color:#555}
</style></head><body><h1>qsbatch</h1>
)";

const char* const kPageSearch =
    R"(<form><label>Name <input type="search" id="name"></label>
<label>Status <select id="status">)";

const char* const kPageEnd = R"(<script>
const cards = [...document.querySelectorAll('article')];
const name = document.getElementById('name'), status_ = document.getElementById('status');
function filter() {
  const text = name.value.toLowerCase(), wanted = status_.value;
  let shown = 0;
  for (const card of cards) {
    const fits = card.dataset.name.toLowerCase().includes(text) &&
      (wanted === '' || card.dataset.status === wanted ||
       (wanted === 'warnings' && card.dataset.warnings === '1'));
    card.hidden = !fits;
    shown += fits;
  }
  document.querySelector('output').textContent = ' ' + shown + ' shown';
}
name.addEventListener('input', filter);
status_.addEventListener('input', filter);
document.querySelector('form').addEventListener('submit', event => event.preventDefault());
filter();
</script></body></html>
)";
