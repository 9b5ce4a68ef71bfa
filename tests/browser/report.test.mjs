// Opens sarn-dump's HTML reports in a real headless browser and checks what
// a reader sees. Run by tests/browser/run.sh:
//   node report.test.mjs CHROMIUM OUTDIR SAMPLE_REPORT [REPORT...]
// The first report is the bundled sample's, checked in detail; every
// report must load without a console error or a network request, and gets
// a screenshot OUTDIR/<name>.png.
import { chromium } from 'playwright-core';
import { statSync } from 'node:fs';
import { basename } from 'node:path';

const [, , executablePath, outDir, sample, ...others] = process.argv;
let failures = 0;
function check(ok, what) {
  if (!ok) {
    failures++;
    console.log(`FAIL ${what}`);
  }
}

const browser = await chromium.launch({ executablePath, args: ['--no-sandbox'] });

async function open(file, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
  const page = await context.newPage();
  const problems = [];
  const url = 'file://' + file;
  page.on('console', (m) => { if (m.type() === 'error') problems.push('console: ' + m.text()); });
  page.on('pageerror', (e) => problems.push('page error: ' + e.message));
  page.on('request', (r) => { if (r.url() !== url) problems.push('request: ' + r.url()); });
  await page.goto(url);
  return { context, page, problems };
}

// Every report: loads clean, and a screenshot for review.
for (const file of [sample, ...others]) {
  const name = basename(file, '.html');
  const { context, page, problems } = await open(file);
  check(problems.length === 0, `${name}: ${problems.join('; ')}`);
  check(statSync(file).size < 400 * 1024, `${name}: ${statSync(file).size} bytes`);
  check((await page.locator('h2').allTextContents()).join('|') ===
        'Overview|Services|PIDs|Tables|Programme guide', `${name}: the five parts`);
  await page.screenshot({ path: `${outDir}/${name}.png`, fullPage: true });
  await context.close();
}

// The sample in detail.
{
  const { context, page } = await open(sample);
  const cells = async (selector) =>
    (await page.locator(selector).allInnerTexts()).map((t) => t.replace(/\s+/g, ' ').trim());

  // Services: the HD service and its one-seg companion.
  const services = await cells('#services-table tbody tr');
  check(services.length === 2, `services rows: ${services.length}`);
  check(services[0].startsWith('0xC840 (51264) SARN HD SARN 0x01 digital TV running no 0x0100 0x0111'),
        `HD service row: ${services[0]}`);
  check(services[0].includes('0x0000000A/0x0001 Ginga-NCL AUTOSTART “SARN Info”'),
        `HD service application: ${services[0]}`);
  check(services[1].startsWith('0xC858 (51288) SARN 1SEG SARN 0xC0 data service running yes 0x1FC8 0x0181'),
        `one-seg service row: ${services[1]}`);

  // PIDs: every PID of the sample, with what it carries; the chart.
  const pids = await cells('#pid-table tbody tr');
  check(pids.length === 11, `PID rows: ${pids.length}`);
  check(pids[0] === '0x0000 (0) 40 5.31 % 15.2 kbit/s 0 0 0 PAT', `PAT PID row: ${pids[0]}`);
  check(pids.some((r) => r.startsWith('0x0111 (273) 400 53.05 %') &&
                         r.endsWith('H.264/AVC video, service 0xC840; PCR, service 0xC840')),
        'video PID row');
  check(await page.locator('svg.chart polyline').count() === 6, 'six PIDs in the chart');

  // Tables: a PAT opens to its decoded fields; the filter keeps one PID.
  const pat = page.locator('details.section').first();
  check(!(await pat.locator('ul.tree').isVisible()), 'tables start closed');
  await pat.locator(':scope > summary').click();
  check(/transportStreamId: 1601/.test(await pat.locator('ul.tree').innerText()), 'PAT fields');
  await pat.locator('summary', { hasText: 'programs' }).click();
  await pat.locator('summary', { hasText: '[0]' }).click();
  const tree = await pat.locator('ul.tree').innerText();
  check(/programNumber: 51264/.test(tree) && /programMapPid: 256/.test(tree),
        `PAT program: ${tree.slice(0, 200)}`);
  const logged = page.locator('details.section[data-table="0x58"]');
  await logged.locator(':scope > summary').click();
  check((await logged.locator('ul.log li.warn').innerText()).includes(
      'TExtendedEventDescriptorItem::parse Declared description length'), 'log line highlighted');
  await page.selectOption('#filter-pid', '0x0012');
  check(await page.locator('details.section:visible').count() === 6, 'filter by PID 0x0012');
  check(await page.locator('#filter-count').innerText() === '6 shown', 'filter count');
  await page.selectOption('#filter-table', '0x50');
  check(await page.locator('details.section:visible').count() === 1, 'filter by table 0x50');

  // Keyboard: a table opens with Enter on its summary.
  await page.selectOption('#filter-pid', '');
  await page.selectOption('#filter-table', '');
  const nit = page.locator('details.section[data-table="0x40"] > summary');
  await nit.focus();
  await page.keyboard.press('Enter');
  check(await page.locator('details.section[data-table="0x40"]').getAttribute('open') !== null,
        'Enter opens a table');

  // Guide: the evening's first event at 18:00, after the axis' first hour.
  const ev = page.locator('details.ev[data-event="0x0101"]');
  check(await ev.getAttribute('data-start') === '2026-11-22 18:00', 'event start');
  check((await ev.locator('summary').innerText()).startsWith('18:00 Jornal SARN'), 'event title');
  const track = await ev.locator('xpath=..').boundingBox();
  const box = await ev.boundingBox();
  check(Math.abs(box.x - track.x) < 2, `18:00 is where the axis starts (${box.x} vs ${track.x})`);
  const next = await page.locator('details.ev[data-event="0x0102"]').boundingBox();
  check(Math.abs(next.x - (box.x + box.width)) < 3, '19:00 follows an hour later');
  await ev.locator('summary').click();
  check((await ev.locator('.info').innerText()).includes('Notícias do dia'), 'event details');
  const events = await page.locator('details.ev').count();
  check(events === 12, `guide events: ${events}`);

  // 200% zoom: the page reflows within the window but for the scrolled
  // tables and guide.
  await page.setViewportSize({ width: 640, height: 900 });
  const overflow = await page.evaluate(() => document.documentElement.scrollWidth - window.innerWidth);
  check(overflow <= 0, `page wider than the window at 200%: ${overflow}px`);
  await page.screenshot({ path: `${outDir}/sample-200.png` });
  await page.setViewportSize({ width: 1100, height: 900 });
  await page.evaluate(() => document.querySelectorAll('details[open]').forEach((d) => { d.open = false; }));
  await page.screenshot({ path: `${outDir}/sample-top.png`, fullPage: true, clip: { x: 0, y: 0, width: 1100, height: 1500 } });
  await context.close();
}

// Without JavaScript the static parts are all there; the filter stays hidden.
{
  const { context, page } = await open(sample, { javaScriptEnabled: false });
  check(await page.locator('#services-table tbody tr').count() === 2, 'services without script');
  check(await page.locator('#pid-table tbody tr').count() === 11, 'PIDs without script');
  check(!(await page.locator('#filters').isVisible()), 'no filter without script');
  await context.close();
}

await browser.close();
console.log(failures === 0 ? `browser checks passed (${1 + others.length} reports)`
                           : `${failures} browser checks failed`);
process.exit(failures === 0 ? 0 : 1);
