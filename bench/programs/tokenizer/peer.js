const n = 4000;
// A lexer's scan: every byte of a text compared with one-byte literals, names, numbers and quoted texts skipped.
function scan(text, counts) {
  const size = text.length;
  let i = 0;
  while (i < size) {
    let c = text[i];
    if (c === " " || c === "\n") {
      i += 1;
    } else if ((c >= "a" && c <= "z") || c === "_") {
      counts[0] += 1;
      while ((c >= "a" && c <= "z") || c === "_") {
        i += 1;
        c = text[i];
      }
    } else if (c >= "0" && c <= "9") {
      counts[1] += 1;
      while (c >= "0" && c <= "9") {
        i += 1;
        c = text[i];
      }
    } else if (c === "'") {
      counts[2] += 1;
      i += 1;
      while (text[i] !== "'") {
        i += 1;
      }
      i += 1;
    } else if (c === "#") {
      while (text[i] !== "\n") {
        i += 1;
      }
    } else {
      counts[3] += 1;
      i += 1;
    }
  }
}

function run(rounds) {
  const line =
    "total = total + price_of(item, 120) * 3 - rest[45] # the sum so far\nname = 'a quoted text'; i = i + 1\n";
  const text = line.repeat(20);
  const counts = [0, 0, 0, 0];
  for (let i = 0; i < rounds; i++) {
    scan(text, counts);
  }
  for (const count of counts) {
    console.log(count);
  }
}

run(n);
